#include <array>
#include <csignal>
#include <string>
#include <vector>

#include "app/addresses.h"
#include "tests/app/app_fixture.h"
#include "tests/plist/binary_builder.h"
#include "tests/support/fatal_stop.h"

namespace pelmarix {
namespace {

using test::ShownAlert;

/// A response of some protocol other than HTTP.
class OtherResponse final : public platform::URLResponse {};

std::shared_ptr<const platform::URLResponse> http(int statusCode, std::optional<std::string> mimeType) {
  return std::make_shared<platform::HTTPURLResponse>(statusCode, std::move(mimeType));
}

std::string plist(const std::string& root) {
  return R"(<?xml version="1.0" encoding="UTF-8"?><plist version="1.0">)" + root + "</plist>";
}

std::string list(const std::string& entries) { return plist("<array>" + entries + "</array>"); }

std::string pair(const std::string& key, const std::string& value) {
  return "<key>" + key + "</key><string>" + value + "</string>";
}

std::string entry(const std::string& name, const std::string& version, const std::string& address) {
  return "<dict>" + pair("AppName", name) + pair("Version", version) + pair("URL", address) + "</dict>";
}

const std::string download = std::string(downloadHostPrefix) + "pelmarix13.zip";

ShownAlert offer(const std::string& version, const std::string& runningVersion = "1.2") {
  return {"An update to this app to version " + version + " is available.",
          "You are currently running Pelmarix version " + runningVersion +
              ".\nPlease choose whether to download this update now in your default browser.",
          platform::AlertStyle::informational,
          {"Ignore", "Download"}};
}

class UpdateCheck : public test::AppTest {
 protected:
  /// What the server answers to a check, from the request to the end of the main queue's work.
  void answer(std::optional<std::string> body, std::shared_ptr<const platform::URLResponse> response,
              std::optional<std::string> error = std::nullopt) {
    delegate.checkForUpdate();
    session.requests.at(0).completionHandler(std::move(body), std::move(response), std::move(error));
    runMainQueue();
  }
  void answerWithList(const std::string& body) { answer(body, http(200, "text/xml")); }

  bool nothingShown() const {
    return services.alerts.empty() && workspace.opened.empty() && isHelpMenuAsBefore() && mainQueue.empty();
  }
  bool isHelpMenuMarked() const {
    return application.help.item.title == "Checked for update" &&
           application.help.item.state == platform::stateOn;
  }
  bool isHelpMenuAsBefore() const {
    return application.help.item.title == "Update not checked" &&
           application.help.item.state == platform::stateOff;
  }

  const std::string goodList = list(entry("Pelmarix", "1.3", download));
};

using UpdateCheckDeathTest = UpdateCheck;

TEST_F(UpdateCheck, AsksTheServerOnceAndReturnsBeforeItAnswers) {
  delegate.checkForUpdate();
  ASSERT_EQ(session.requests.size(), 1u);
  EXPECT_EQ(session.requests[0].address, updateListAddress);
  EXPECT_TRUE(nothingShown());
}

TEST_F(UpdateCheck, IsLeftOutWithoutAnInformationDictionary) {
  bundle.info.reset();
  delegate.checkForUpdate();
  EXPECT_TRUE(session.requests.empty());
  EXPECT_TRUE(nothingShown());
}

TEST_F(UpdateCheck, IsLeftOutWithAnEmptyInformationDictionary) {
  bundle.info = platform::InfoDictionary{};
  delegate.checkForUpdate();
  EXPECT_TRUE(session.requests.empty());
  EXPECT_TRUE(nothingShown());
}

TEST_F(UpdateCheck, ReportsABundleWithoutAVersion) {
  bundle.info = platform::InfoDictionary{{"CFBundleName", std::string("Pelmarix")}};
  delegate.checkForUpdate();
  EXPECT_TRUE(session.requests.empty());
  EXPECT_EQ(services.alerts,
            std::vector{test::errorAlert("An error occurred:",
                                         "Can't check for updates:\nNo app version string found.")});
}

TEST_F(UpdateCheckDeathTest, StopsTheProgramWhenTheBundlesVersionIsNotAString) {
  bundle.info = platform::InfoDictionary{{"CFBundleShortVersionString", 1.2}};
  EXPECT_FATAL_STOP(delegate.checkForUpdate());
}

// The answer, before it reaches the main queue.

TEST_F(UpdateCheck, DropsAnAnswerWithAnError) {
  answer(goodList, http(200, "text/xml"), "The connection was closed.");
  EXPECT_TRUE(nothingShown());
}

TEST_F(UpdateCheck, DropsAMissingResponse) {
  answer(std::nullopt, nullptr, "The host was not found.");
  EXPECT_TRUE(nothingShown());
  session.requests.clear();
  answer(goodList, nullptr);
  EXPECT_TRUE(nothingShown());
}

TEST_F(UpdateCheck, DropsAResponseOfAnotherProtocol) {
  answer(goodList, std::make_shared<OtherResponse>());
  EXPECT_TRUE(nothingShown());
}

TEST_F(UpdateCheck, DropsEveryStatusOutside200To299) {
  for (const int status : {100, 199, 300, 301, 304, 404, 500}) {
    session.requests.clear();
    answer(goodList, http(status, "text/xml"));
    EXPECT_TRUE(nothingShown()) << status;
  }
}

TEST_F(UpdateCheck, AcceptsEveryStatusFrom200To299) {
  for (const int status : {200, 203, 299}) {
    services.alerts.clear();
    session.requests.clear();
    answer(goodList, http(status, "text/xml"));
    EXPECT_EQ(services.alerts, std::vector{offer("1.3")}) << status;
  }
}

TEST_F(UpdateCheck, DropsEveryMediaTypeButTheTwo) {
  for (const char* type : {"application/octet-stream", "application/xml", "application/x-plist", "text/html",
                           "TEXT/XML", "Text/Plain", "text/xml ", "text/xml; charset=utf-8", "text", ""}) {
    session.requests.clear();
    answer(goodList, http(200, type));
    EXPECT_TRUE(nothingShown()) << type;
  }
}

TEST_F(UpdateCheck, DropsAnAnswerWithoutAMediaType) {
  answer(goodList, http(200, std::nullopt));
  EXPECT_TRUE(nothingShown());
}

TEST_F(UpdateCheck, AcceptsTextXmlAndTextPlain) {
  for (const char* type : {"text/xml", "text/plain"}) {
    services.alerts.clear();
    session.requests.clear();
    answer(goodList, http(200, type));
    EXPECT_EQ(services.alerts, std::vector{offer("1.3")}) << type;
  }
}

TEST_F(UpdateCheck, PostsOneBlockAndDoesNothingBeforeTheMainQueueRuns) {
  delegate.checkForUpdate();
  session.requests.at(0).completionHandler(goodList, http(200, "text/xml"), std::nullopt);
  EXPECT_EQ(mainQueue.size(), 1u);
  EXPECT_TRUE(services.alerts.empty());
  EXPECT_TRUE(isHelpMenuAsBefore());
  runMainQueue();
  EXPECT_EQ(services.alerts.size(), 1u);
}

// The list.

TEST_F(UpdateCheck, ReportsABodyThatIsNoPropertyList) {
  const auto report = test::errorAlert("An error occurred:", "Error in update Property List.");
  for (const std::string& body : {std::string(), std::string("<html><body>Sign in</body></html>"),
                                  goodList.substr(0, goodList.size() - 20), std::string("bplist00")}) {
    services.alerts.clear();
    session.requests.clear();
    answer(body, http(200, "text/plain"));
    EXPECT_EQ(services.alerts, std::vector{report}) << body;
  }
  EXPECT_TRUE(isHelpMenuAsBefore());
}

TEST_F(UpdateCheck, ReportsAListWithoutEntries) {
  const std::vector report{test::errorAlert("An error occurred:", "Update Property List has no entries.")};
  for (const std::string& body : {plist("<array/>"), list("")}) {
    services.alerts.clear();
    session.requests.clear();
    answerWithList(body);
    EXPECT_EQ(services.alerts, report) << body;
  }
}

TEST_F(UpdateCheck, ShowsNothingWhenTheListHasOnlyOtherPrograms) {
  answerWithList(list(entry("Other", "9.9", download)));
  EXPECT_TRUE(nothingShown());
}

TEST_F(UpdateCheck, TellsUpperAndLowerCaseNamesApart) {
  answerWithList(list(entry("pelmarix", "9.9", download) + entry("Pelmarix ", "9.9", download)));
  EXPECT_TRUE(nothingShown());
}

TEST_F(UpdateCheck, ReadsNothingButTheNameOfOtherPrograms) {
  answerWithList(list("<dict>" + pair("AppName", "Other") + "<key>URL</key><true/></dict>" +
                      entry("Pelmarix", "1.3", download)));
  EXPECT_EQ(services.alerts, std::vector{offer("1.3")});
}

TEST_F(UpdateCheck, IgnoresOtherKeysOfAnEntry) {
  answerWithList(list("<dict>" + pair("AppName", "Pelmarix") + pair("URL", download) +
                      "<key>Size</key><integer>3</integer>" + pair("Version", "1.3") + "</dict>"));
  EXPECT_EQ(services.alerts, std::vector{offer("1.3")});
}

TEST_F(UpdateCheck, OnlyMarksTheHelpMenuWhenTheRunningVersionIsPublished) {
  answerWithList(list(entry("Pelmarix", "1.2", download)));
  EXPECT_TRUE(services.alerts.empty());
  EXPECT_TRUE(isHelpMenuMarked());
}

TEST_F(UpdateCheck, TakesCanonicallyEquivalentVersionsAsTheSame) {
  services.services.composedForm = [](std::string_view text) {
    return text == "1.2e\xCC\x81" ? std::string("1.2\xC3\xA9") : std::string(text);
  };
  bundle.info = platform::InfoDictionary{{"CFBundleShortVersionString", std::string("1.2e\xCC\x81")}};
  answerWithList(list(entry("Pelmarix", "1.2\xC3\xA9", download)));
  EXPECT_TRUE(services.alerts.empty());
  EXPECT_TRUE(isHelpMenuMarked());
}

TEST_F(UpdateCheck, OffersEveryVersionThatDiffersFromTheRunningOne) {
  for (const char* version : {"1.0", "1.3", "1.2.0", "01.2", " 1.2", "1.2 BETA"}) {
    services.alerts.clear();
    session.requests.clear();
    answerWithList(list(entry("Pelmarix", version, download)));
    EXPECT_EQ(services.alerts, std::vector{offer(version)});
    EXPECT_TRUE(isHelpMenuMarked());
  }
}

TEST_F(UpdateCheck, MarksTheHelpMenuBeforeItOffersTheUpdate) {
  bool wasMarked = false;
  services.answer = [&](const ShownAlert&) {
    wasMarked = isHelpMenuMarked();
    return platform::alertFirstButtonReturn;
  };
  answerWithList(goodList);
  EXPECT_TRUE(wasMarked);
}

TEST_F(UpdateCheck, OffersNoDownloadFromAnotherHost) {
  const std::string prefix = downloadHostPrefix;
  for (const std::string& address :
       {std::string("https://downloads.example/pelmarix13.zip"), prefix.substr(0, prefix.size() - 1),
        "http" + prefix.substr(5) + "pelmarix13.zip", std::string("not an address"), std::string()}) {
    answerWithList(list(entry("Pelmarix", "1.3", address)));
    EXPECT_TRUE(services.alerts.empty()) << address;
    EXPECT_TRUE(isHelpMenuMarked());
  }
}

TEST_F(UpdateCheck, FindsTheDownloadHostAnywhereInTheAddress) {
  answerWithList(list(entry("Pelmarix", "1.3", "https://mirror.example/?from=" + download)));
  EXPECT_EQ(services.alerts, std::vector{offer("1.3")});
}

TEST_F(UpdateCheck, OffersEachMatchingEntryInTheListsOrder) {
  answerWithList(list(entry("Pelmarix", "1.4", download) + entry("Other", "2.0", download) +
                      entry("Pelmarix", "1.2", download) + entry("Pelmarix", "1.3", download)));
  EXPECT_EQ(services.alerts, (std::vector{offer("1.4"), offer("1.3")}));
  EXPECT_TRUE(isHelpMenuMarked());
}

TEST_F(UpdateCheck, OpensTheAddressWhenDownloadIsChosen) {
  services.answer = [](const ShownAlert&) { return platform::alertSecondButtonReturn; };
  answerWithList(list(entry("Pelmarix", "1.3", download + "?a=1&amp;b=2")));
  EXPECT_EQ(workspace.opened, std::vector{download + "?a=1&b=2"});
}

TEST_F(UpdateCheck, OpensNothingWhenTheOfferIsIgnored) {
  for (const int answered : {platform::alertFirstButtonReturn, 1002, 0}) {
    services.answer = [answered](const ShownAlert&) { return answered; };
    answerWithList(goodList);
    EXPECT_TRUE(workspace.opened.empty()) << answered;
  }
}

TEST_F(UpdateCheck, MakesTheSameOfferAgainAtTheNextCheck) {
  answerWithList(goodList);
  session.requests.clear();
  answerWithList(goodList);
  EXPECT_EQ(services.alerts, (std::vector{offer("1.3"), offer("1.3")}));
}

TEST_F(UpdateCheck, GoesOnWithoutAHelpMenuOrItsItem) {
  application.help.item.title = "Help";
  answerWithList(goodList);
  EXPECT_EQ(application.help.item.title, "Help");
  application.menu = nullptr;
  answerWithList(goodList);
  EXPECT_EQ(services.alerts.size(), 2u);
}

TEST_F(UpdateCheck, ReadsBinaryListsToo) {
  // [ { "AppName": "Pelmarix", "Version": "1.2", "URL": "" } ]
  const std::string body(
      "bplist00\xA1\x01\xD3\x02\x03\x04\x05\x06\x07"
      "WAppNameWVersionSURLXPelmarixS1.2P"
      "\x08\x0A\x11\x19\x21\x25\x2E\x32"
      "\0\0\0\0\0\0\x01\x01\0\0\0\0\0\0\0\x08\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\x33",
      8 + 2 + 7 + 34 + 8 + 32);
  answerWithList(body);
  EXPECT_TRUE(services.alerts.empty());
  EXPECT_TRUE(isHelpMenuMarked());
}

TEST_F(UpdateCheck, DropsAListThatIsFarTooLarge) {
  const std::size_t largest = std::size_t{256} << 10U;
  answerWithList(goodList + std::string(largest + 1 - goodList.size(), ' '));
  EXPECT_TRUE(nothingShown());
  session.requests.clear();
  answerWithList(goodList + std::string(largest - goodList.size(), ' '));
  EXPECT_EQ(services.alerts, std::vector{offer("1.3")});
}

std::string text(const std::string& contents) {
  return plist::hex("5F 12") + plist::bigEndianBytes(contents.size(), 4) + contents;
}

/// A binary list that names one entry of another program in so many places, and this program's entry behind.
/// The other one has so many keys and a name of so many letters.
std::string sharingList(std::size_t places, std::size_t keys, std::size_t letters) {
  using namespace plist;
  const auto repeated = [](std::size_t count, char reference) { return std::string(count, reference); };
  return BinaryPlist{
      .objects =
          {
              hex("AF 12") + bigEndianBytes(places + 1, 4) + repeated(places, 1) + '\2',
              hex("DF 12") + bigEndianBytes(keys, 4) + '\3' + repeated(keys - 1, 4) + repeated(keys, 8),
              hex("D3 03 04 05 06 07 09"),
              text("AppName"),
              text("Version"),
              text("URL"),
              text("Pelmarix"),
              text("1.3"),
              text(std::string(letters, 'a')),
              text(download),
          },
      .offsetWidth = 4}
      .bytes();
}

TEST_F(UpdateCheck, LooksOnlySoFarIntoAListThatRepeatsOneEntry) {
  for (const auto& [places, keys, letters] :
       std::vector<std::array<std::size_t, 3>>{{1, 10'000, 1}, {1, 1, 100'000}, {10'000, 1, 1}}) {
    answerWithList(sharingList(places, keys, letters));
    EXPECT_EQ(services.alerts, std::vector{offer("1.3")});
    services.alerts.clear();
    session.requests.clear();
  }
  application.help.item = {};
  for (const auto& [places, keys, letters] :
       std::vector<std::array<std::size_t, 3>>{{10'000, 10'000, 1}, {10'000, 1, 100'000}, {100'000, 1, 1}}) {
    answerWithList(sharingList(places, keys, letters));
    EXPECT_TRUE(nothingShown());
    session.requests.clear();
  }
}

TEST_F(UpdateCheck, OffersOnlySoMuchOfAListThatRepeatsItsOwnEntry) {
  using namespace plist;
  const std::string address = download + std::string(1000 - download.size(), 'a');
  answerWithList(BinaryPlist{.objects = {hex("AF 11") + bigEndianBytes(1000, 2) + std::string(1000, 1),
                                         hex("D3 02 03 04 05 06 07"), text("AppName"), text("Version"),
                                         text("URL"), text("Pelmarix"), text("1.3"), text(address)},
                             .offsetWidth = 2}
                     .bytes());
  // Of 256 KiB each takes 16 bytes a key and its texts.
  EXPECT_EQ(services.alerts, std::vector<ShownAlert>((256 << 10) / (3 * 16 + 8 + 3 + 1000), offer("1.3")));
}

// The list is trusted: what breaks its form ends the program.

TEST_F(UpdateCheckDeathTest, StopsTheProgramOnAnAcceptedAnswerWithoutABody) {
  EXPECT_FATAL_STOP(answer(std::nullopt, http(200, "text/xml")));
}

TEST_F(UpdateCheckDeathTest, StopsTheProgramWhenTheRootIsNotAnArray) {
  for (const std::string& root : {entry("Pelmarix", "1.3", download), std::string("<string>1.3</string>"),
                                  std::string("<dict/>"), std::string("<true/>")})
    EXPECT_FATAL_STOP(answerWithList(plist(root))) << root;
}

TEST_F(UpdateCheckDeathTest, StopsTheProgramAtAnEntryThatIsNotADictionary) {
  for (const char* element : {"<string>Pelmarix</string>", "<array/>", "<integer>1</integer>"})
    EXPECT_FATAL_STOP(answerWithList(list(element))) << element;
}

TEST_F(UpdateCheckDeathTest, StopsTheProgramAtALargeEntryThatIsNotADictionary) {
  std::string elements;
  for (int i = 0; i < 17'000; ++i) elements += "<true/>";
  EXPECT_FATAL_STOP(answerWithList(list("<array>" + elements + "</array>")));
}

TEST_F(UpdateCheckDeathTest, StopsTheProgramAtAnEntryWithoutANameThatIsAString) {
  for (const std::string& contents :
       {std::string(), pair("appname", "Pelmarix"), std::string("<key>AppName</key><integer>1</integer>")})
    EXPECT_FATAL_STOP(answerWithList(list("<dict>" + contents + "</dict>"))) << contents;
}

TEST_F(UpdateCheckDeathTest, StopsTheProgramWhenItsOwnEntryHasNoVersionThatIsAString) {
  for (const std::string& version : {std::string(), std::string("<key>Version</key><real>1.3</real>")})
    EXPECT_FATAL_STOP(answerWithList(
        list("<dict>" + pair("AppName", "Pelmarix") + version + pair("URL", download) + "</dict>")))
        << version;
}

TEST_F(UpdateCheckDeathTest, StopsTheProgramWhenItsOwnEntryHasNoAddressThatIsAString) {
  // The version is the running one: all three values are read before they are compared.
  for (const std::string& address : {std::string(), std::string("<key>URL</key><false/>")})
    EXPECT_FATAL_STOP(answerWithList(
        list("<dict>" + pair("AppName", "Pelmarix") + pair("Version", "1.2") + address + "</dict>")))
        << address;
}

TEST_F(UpdateCheckDeathTest, StopsTheProgramWhenAnInvalidAddressIsToBeDownloaded) {
  services.answer = [](const ShownAlert&) { return platform::alertSecondButtonReturn; };
  const std::string body =
      list(entry("Pelmarix", "1.3", std::string(downloadHostPrefix) + "pelmarix 1.3.zip"));
  EXPECT_FATAL_STOP(answerWithList(body));
}

TEST_F(UpdateCheck, DoesNotMindAnInvalidAddressThatIsIgnored) {
  answerWithList(list(entry("Pelmarix", "1.3", std::string(downloadHostPrefix) + "pelmarix 1.3.zip")));
  EXPECT_EQ(services.alerts, std::vector{offer("1.3")});
  EXPECT_TRUE(workspace.opened.empty());
}

TEST_F(UpdateCheckDeathTest, HasShownTheEarlierOffersWhenALaterEntryStopsTheProgram) {
  const std::string body = list(entry("Pelmarix", "1.3", download) + "<string>Pelmarix</string>");
  const auto exitWhenOffered = [&] {
    services.answer = [](const ShownAlert&) -> int { std::_Exit(7); };
    answerWithList(body);
  };
  EXPECT_EXIT(exitWhenOffered(), testing::ExitedWithCode(7), "");
  EXPECT_FATAL_STOP(answerWithList(body));
}

}  // namespace
}  // namespace pelmarix
