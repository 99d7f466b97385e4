#include "qt/services/network_session.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <QElapsedTimer>
#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkProxy>
#include <QProcess>
#include <QSslCertificate>
#include <QSslConfiguration>
#include <QTemporaryDir>
#include <atomic>
#include <future>
#include <optional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "qt/services/http_answer.h"
#include "qt/services/text_conversion.h"
#include "tests/support/test_services.h"

namespace pelmarix::qt {
namespace {

using namespace std::chrono_literals;

/// What a completion handler was given.
struct Answer {
  std::optional<std::string> body;
  std::optional<int> status;
  std::optional<std::string> mimeType;
  std::optional<std::string> error;
  std::thread::id thread;
};

/// Tells whether an answer is one that the program goes on with, and why not.
testing::AssertionResult isBody(const Answer& answer) {
  if (answer.error) return testing::AssertionFailure() << "error: " << *answer.error;
  if (!answer.body || !answer.status) return testing::AssertionFailure() << "no body or no status";
  return testing::AssertionSuccess();
}

testing::AssertionResult isError(const Answer& answer) {
  if (!answer.error) return testing::AssertionFailure() << "no error, status " << answer.status.value_or(0);
  if (answer.error->empty() || answer.body) return testing::AssertionFailure() << "an empty error or a body";
  return testing::AssertionSuccess();
}

/// The loopback's own HTTPS server and, as the only authority that is trusted, the one that it made.
class TestServer {
 public:
  TestServer() {
    process_.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process_.start(PELMARIX_PYTHON, {PELMARIX_HTTPS_SERVER, folder_.path()});
    while (!process_.canReadLine() && process_.waitForReadyRead()) {
    }
    addresses_ = QJsonDocument::fromJson(process_.readLine()).object();
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.setCaCertificates(QSslCertificate::fromPath(addresses_["authority"].toString()));
    QSslConfiguration::setDefaultConfiguration(configuration);
    QNetworkProxy::setApplicationProxy(QNetworkProxy::NoProxy);
  }
  ~TestServer() {
    process_.closeWriteChannel();
    process_.waitForFinished();
  }
  TestServer(const TestServer&) = delete;
  TestServer& operator=(const TestServer&) = delete;

  platform::URL address(const char* name, const std::string& path) const {
    return platform::URL::fromString(addresses_[QLatin1String(name)].toString().toStdString() + path).value();
  }

 private:
  QTemporaryDir folder_;
  QProcess process_;
  QJsonObject addresses_;
};

class NetworkSessionTest : public testing::Test {
 protected:
  NetworkSessionTest() { services.services.isValidAddress = isValidAddress; }
  static void SetUpTestSuite() { server = std::make_unique<TestServer>(); }
  static void TearDownTestSuite() { server.reset(); }

  /// One request to the server of that name, with a session of its own that is gone when this returns.
  static Answer get(const std::string& path, const char* name = "good",
                    std::chrono::milliseconds timeout = 20s, std::chrono::milliseconds timeLimit = 1min) {
    std::vector<Answer> answers;
    std::promise<void> answered;
    std::optional<NetworkSession> session(std::in_place, timeout, timeLimit);
    session
        ->dataTaskWithURLCompletionHandler(
            server->address(name, path),
            [&](std::optional<std::string> body, const std::shared_ptr<const platform::URLResponse>& response,
                std::optional<std::string> error) {
              const auto http = std::dynamic_pointer_cast<const platform::HTTPURLResponse>(response);
              answers.push_back({std::move(body), http ? std::optional(http->statusCode()) : std::nullopt,
                                 http ? http->mimeType() : std::nullopt, std::move(error),
                                 std::this_thread::get_id()});
              if (answers.size() == 1) answered.set_value();
            })
        ->resume();
    EXPECT_EQ(answered.get_future().wait_for(60s), std::future_status::ready) << path;
    session.reset();
    EXPECT_EQ(answers.size(), 1u) << path;
    return answers.empty() ? Answer{} : answers.front();
  }

  test::TestServices services;
  static inline std::unique_ptr<TestServer> server;
};

TEST_F(NetworkSessionTest, HandsOverWhatTheServerAnsweredOnAThreadOfItsOwn) {
  const Answer answer = get("list");
  ASSERT_TRUE(isBody(answer));
  EXPECT_TRUE(answer.body->starts_with("<?xml version"));
  EXPECT_TRUE(answer.body->ends_with("</array></plist>\n"));
  EXPECT_EQ(answer.status, 200);
  EXPECT_EQ(answer.mimeType, "text/xml");
  EXPECT_NE(answer.thread, std::this_thread::get_id());
}

TEST_F(NetworkSessionTest, SendsNothingBeforeTheTaskIsResumedNorWhenItIsDropped) {
  std::atomic<int> calls = 0;
  NetworkSession session;
  auto task = session.dataTaskWithURLCompletionHandler(server->address("good", "list?dropped"),
                                                       [&](auto&&...) { ++calls; });
  // What was sent before it has long arrived when this one is answered.
  const auto sendAnother = [&] {
    std::promise<void> answered;
    session
        .dataTaskWithURLCompletionHandler(server->address("good", "redirect/5"),
                                          [&](auto&&...) { answered.set_value(); })
        ->resume();
    ASSERT_EQ(answered.get_future().wait_for(60s), std::future_status::ready);
  };
  sendAnother();
  task.reset();
  sendAnother();
  EXPECT_EQ(calls, 0);
  EXPECT_EQ(get("count/list?dropped").body, "0");
}

TEST_F(NetworkSessionTest, SendsOneRequestHoweverOftenTheTaskIsResumed) {
  const std::string path = "list?once";
  std::promise<void> answered;
  NetworkSession session;
  const auto task = session.dataTaskWithURLCompletionHandler(server->address("good", path),
                                                             [&](auto&&...) { answered.set_value(); });
  task->resume();
  task->resume();
  ASSERT_EQ(answered.get_future().wait_for(60s), std::future_status::ready);
  EXPECT_EQ(get("count/" + path).body, "1");
}

// Who the server is.

TEST_F(NetworkSessionTest, TrustsNoServerWithACertificateForAnotherName) {
  const Answer answer = get("list", "wrong-name");
  EXPECT_TRUE(isError(answer));
  EXPECT_FALSE(answer.status);
}

TEST_F(NetworkSessionTest, TrustsNoServerWithAnExpiredCertificate) {
  EXPECT_TRUE(isError(get("list", "expired")));
}

TEST_F(NetworkSessionTest, TrustsNoServerWithACertificateOfItsOwn) {
  EXPECT_TRUE(isError(get("list", "self-signed")));
}

// Redirects.

TEST_F(NetworkSessionTest, FollowsFiveRedirectsAndNoMore) {
  EXPECT_TRUE(isBody(get("redirect/1")));
  const Answer answer = get("redirect/5");
  ASSERT_TRUE(isBody(answer));
  EXPECT_EQ(answer.status, 200);
  EXPECT_TRUE(answer.body->starts_with("<?xml"));
  EXPECT_TRUE(isError(get("redirect/6")));
}

TEST_F(NetworkSessionTest, FollowsTheStatusesOfRedirectsAndNoOther) {
  for (const int status : {301, 302, 303, 307, 308})
    EXPECT_EQ(get("moved/" + std::to_string(status)).status, 200) << status;
  for (const int status : {201, 300, 304, 305, 306, 309})
    EXPECT_EQ(get("moved/" + std::to_string(status)).status, status);
}

TEST_F(NetworkSessionTest, FollowsARedirectToAnAddressThatIsNotEncoded) {
  EXPECT_TRUE(isBody(get("to-unencoded")));
  EXPECT_EQ(get("count/list?a%20%3Cb%3E").body, "1");
}

TEST_F(NetworkSessionTest, EndsARedirectInALoop) { EXPECT_TRUE(isError(get("loop"))); }

TEST_F(NetworkSessionTest, FollowsNoRedirectToAnUnprotectedAddress) {
  EXPECT_TRUE(isError(get("to-http")));
  EXPECT_EQ(get("count/list?unprotected").body, "0");
}

TEST_F(NetworkSessionTest, TrustsTheServerThatARedirectLeadsToNoMoreThanAnyOther) {
  EXPECT_TRUE(isError(get("to-wrong-name")));
}

// Answers of all kinds.

TEST_F(NetworkSessionTest, HandsOverEveryStatusAsAnAnswer) {
  for (const int status : {200, 203, 204, 300, 304, 400, 401, 403, 404, 410, 418, 500, 503}) {
    const Answer answer = get("status/" + std::to_string(status));
    EXPECT_TRUE(isBody(answer)) << status;
    EXPECT_EQ(answer.status, status);
  }
}

TEST_F(NetworkSessionTest, HandsOverAnEmptyBodyWhereThereIsNone) {
  EXPECT_EQ(get("status/204").body, "");
  EXPECT_EQ(get("bytes/0").body, "");
}

TEST_F(NetworkSessionTest, GivesTheMediaTypeInTheServersLettersWithoutParameters) {
  for (const auto& [sent, given] : std::vector<std::pair<std::string, std::string>>{
           {"text/plain", "text/plain"},
           {"application/octet-stream", "application/octet-stream"},
           {"TEXT/XML", "TEXT/XML"},
           {"text/xml;charset=utf-8", "text/xml"},
           {"text/xml%20;%20charset=%22utf-8%22;%20x=y", "text/xml"}})
    EXPECT_EQ(get("type/" + sent).mimeType, given);
}

TEST_F(NetworkSessionTest, GivesNoMediaTypeWhereThereIsNone) {
  EXPECT_EQ(get("type").mimeType, std::nullopt);
  EXPECT_EQ(get("type/;charset=utf-8").mimeType, std::nullopt);
}

TEST_F(NetworkSessionTest, ShowsACaptivePortalsPageForWhatItIs) {
  const Answer answer = get("portal");
  EXPECT_TRUE(isBody(answer));
  EXPECT_EQ(answer.mimeType, "text/html");
}

TEST_F(NetworkSessionTest, AsksForABodyThatIsNotCompressed) {
  const Answer answer = get("as-asked-for");
  ASSERT_TRUE(isBody(answer));
  EXPECT_EQ(answer.body, get("list").body);
}

// What goes wrong under way.

TEST_F(NetworkSessionTest, TakesABodyThatIsCompressedAllTheSameAsAnError) {
  for (const char* body : {"gzip", "gzip-cut", "gzip-bomb"}) {
    const Answer answer = get(body);
    EXPECT_TRUE(isError(answer)) << body;
    EXPECT_EQ(answer.status, 200) << body;
  }
}

TEST_F(NetworkSessionTest, TakesAnAnswerThatIsCutAnywhereAsAnError) {
  for (int size = 0; size < 100; ++size) EXPECT_TRUE(isError(get("cut/" + std::to_string(size)))) << size;
}

TEST_F(NetworkSessionTest, UnderstandsABodyInChunksAndOneThatEndsWithTheConnection) {
  const std::string list = *get("list").body;
  EXPECT_EQ(get("chunks").body, list);
  EXPECT_EQ(get("until-close").body, list);
}

TEST_F(NetworkSessionTest, TakesABodyShorterThanAnnouncedAsAnError) { EXPECT_TRUE(isError(get("short"))); }

TEST_F(NetworkSessionTest, EndsWhenNothingComesForTheTimeout) {
  EXPECT_TRUE(isError(get("silent", "good", 300ms)));
  EXPECT_TRUE(isError(get("stuck", "good", 300ms)));
  EXPECT_TRUE(isError(get("list", "mute", 300ms)));
  EXPECT_TRUE(isError(get("drip/3000/2", "good", 300ms)));
}

TEST_F(NetworkSessionTest, WaitsForAsLongAsSomethingComesWithinTheTimeout) {
  QElapsedTimer timer;
  timer.start();
  const Answer answer = get("drip/100/30", "good", 2s);
  ASSERT_TRUE(isBody(answer));
  EXPECT_EQ(answer.body, get("list").body);
  EXPECT_GT(timer.elapsed(), 2000);
}

TEST_F(NetworkSessionTest, EndsWhenTheAnswerTakesLongerThanTheTimeLimit) {
  QElapsedTimer timer;
  timer.start();
  const Answer answer = get("endless/drip", "good", 20s, 500ms);
  EXPECT_TRUE(isError(answer));
  EXPECT_EQ(answer.status, 200);
  EXPECT_GE(timer.elapsed(), 500);
}

TEST_F(NetworkSessionTest, TakesAnAnswerAboveTheBoundAsAnError) {
  const std::size_t large = maximumAnswerSize - 1000;  // which leaves room for the head
  const Answer answer = get("bytes/" + std::to_string(large));
  ASSERT_TRUE(isBody(answer));
  EXPECT_EQ(answer.body->size(), large);
  EXPECT_TRUE(isError(get("bytes/" + std::to_string(maximumAnswerSize))));
}

TEST_F(NetworkSessionTest, EndsAnAnswerThatHasNoEnd) {
  for (const std::string part :
       {"status", "hints", "headers", "header", "body", "chunks", "extensions", "trailers"})
    EXPECT_TRUE(isError(get("endless/" + part, "good", 10min, 10min))) << part;
}

TEST_F(NetworkSessionTest, DoesNotTakeTheMemoryThatAHugeBodyWould) {
  const auto peakInKilobytes = [] {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
#ifdef __APPLE__
    return usage.ru_maxrss / 1024;  // bytes
#else
    return usage.ru_maxrss;
#endif
  };
  const long before = peakInKilobytes();
  EXPECT_TRUE(isError(get("bytes/" + std::to_string(400 << 20))));
  EXPECT_TRUE(isError(get("gzip-bomb")));
  for (const char* part : {"headers", "header", "extensions", "chunks"})
    EXPECT_TRUE(isError(get(std::string("endless/") + part)));
  EXPECT_LT(peakInKilobytes() - before, 200 << 10);
}

TEST_F(NetworkSessionTest, ReportsAServerThatIsNotThere) {
  NetworkSession session;
  std::promise<bool> failed;
  session
      .dataTaskWithURLCompletionHandler(*platform::URL::fromString("https://localhost:1/list"),
                                        [&](const auto& body, const auto& response, const auto& error) {
                                          failed.set_value(error && !body && !response);
                                        })
      ->resume();
  EXPECT_TRUE(failed.get_future().get());
  EXPECT_EQ(session.shutDown(), NetworkSession::ShutDown::complete);
}

// Leaving. The sanitizers see to it that nothing is left behind.

TEST_F(NetworkSessionTest, CallsNoHandlerOnceItIsShutDown) {
  constexpr std::chrono::milliseconds timeout = 500ms;
  for (const auto& [name, path] : std::vector<std::pair<const char*, std::string>>{
           {"good", "silent"}, {"good", "stuck"}, {"mute", ""}, {"good", "drip/50/10"}}) {
    std::atomic<int> calls = 0;
    NetworkSession session(timeout);
    session.dataTaskWithURLCompletionHandler(server->address(name, path), [&](auto&&...) { ++calls; })
        ->resume();
    static_cast<void>(session.shutDown());
    // Ends as the first request would have ended by now, with an answer or by the time-out.
    get(path, name, timeout);
    EXPECT_EQ(calls, 0) << name << ' ' << path;
  }
}

TEST_F(NetworkSessionTest, TellsAtTheEndWhetherALookUpMayBeRunning) {
  const auto shutDownAfter = [](const char* name, const std::string& path) {
    NetworkSession session(1s);
    std::promise<void> answered;
    session
        .dataTaskWithURLCompletionHandler(server->address(name, path),
                                          [&](auto&&...) { answered.set_value(); })
        ->resume();
    answered.get_future().wait();
    return session.shutDown();
  };
  using enum NetworkSession::ShutDown;
  EXPECT_EQ(NetworkSession().shutDown(), complete);
  EXPECT_EQ(shutDownAfter("good", "list"), complete);
  EXPECT_EQ(shutDownAfter("good", "stuck"), complete);
  EXPECT_EQ(shutDownAfter("expired", "list"), complete);
  EXPECT_EQ(shutDownAfter("mute", ""), complete);
}

TEST_F(NetworkSessionTest, ShutsDownAtAnyMomentOfARequest) {
  const std::string path = "drip/5/20";  // takes 100 ms, and the greeting before it some
  std::atomic<int> lateCalls = 0;
  std::vector<std::unique_ptr<NetworkSession>> sessions;
  for (int pause = 0; pause < 80; pause += 2) {
    NetworkSession& session = *sessions.emplace_back(std::make_unique<NetworkSession>());
    const auto isShutDown = std::make_shared<std::atomic<bool>>(false);
    session
        .dataTaskWithURLCompletionHandler(server->address("good", path),
                                          [&lateCalls, isShutDown](auto&&...) {
                                            if (*isShutDown) ++lateCalls;
                                          })
        ->resume();
    std::this_thread::sleep_for(std::chrono::milliseconds(pause));
    QElapsedTimer timer;
    timer.start();
    static_cast<void>(session.shutDown());
    EXPECT_LT(timer.elapsed(), 1000);
    *isShutDown = true;
  }
  get(path);  // as long as the last of them would have taken
  EXPECT_EQ(lateCalls, 0);
}

}  // namespace
}  // namespace pelmarix::qt
