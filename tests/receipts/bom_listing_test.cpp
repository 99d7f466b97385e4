#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "platform/task.h"
#include "receipts/bom.h"
#include "tests/support/fatal_stop.h"
#include "tests/support/test_services.h"

namespace pelmarix {
namespace {

using testing::ElementsAre;

/// What a lister that is not there does, and what order its parts are used in. Real children are run by the
/// tests of the implementation.
class ScriptedLister {
 public:
  explicit ScriptedLister(test::TestServices& services) {
    services.services.makePipe = [this] { return std::make_unique<ScriptedPipe>(*this); };
    services.services.makeTask = [this] { return std::make_unique<ScriptedTask>(*this); };
  }

  std::string output;
  int status = 0;
  bool cannotBeStarted = false;
  bool cannotBeRead = false;
  std::string launchPath;
  std::vector<std::string> arguments;
  std::vector<std::string> steps;

 private:
  class ScriptedPipe final : public platform::Pipe {
   public:
    explicit ScriptedPipe(ScriptedLister& lister) : lister_(lister) {}
    Result<std::string, std::error_code> readDataToEndOfFile() override {
      lister_.steps.emplace_back("read");
      if (lister_.cannotBeRead) return std::make_error_code(std::errc::io_error);
      return lister_.output;
    }

   private:
    ScriptedLister& lister_;
  };

  class ScriptedTask final : public platform::Task {
   public:
    explicit ScriptedTask(ScriptedLister& lister) : lister_(lister) {}
    void setLaunchPath(const std::string& path) override { lister_.launchPath = path; }
    void setArguments(const std::vector<std::string>& list) override { lister_.arguments = list; }
    void setStandardOutput(platform::Pipe& /*pipe*/) override { lister_.steps.emplace_back("connect"); }
    void launch() override {
      lister_.steps.emplace_back("launch");
      if (lister_.cannotBeStarted) throw platform::TaskLaunchError("no such program");
    }
    void waitUntilExit() override { lister_.steps.emplace_back("wait"); }
    int terminationStatus() const override { return lister_.status; }

   private:
    ScriptedLister& lister_;
  };
};

class Listing : public testing::Test {
 protected:
  std::string list(const std::string& path = "/System/Library/Receipts/com.example.pkg") {
    return BoMItem("com.example.pkg", Date{0}, path).listBoM();
  }
  test::TestServices services;
  ScriptedLister lister{services};
};

TEST_F(Listing, RunsTheListerWithFourArguments) {
  list();
  EXPECT_EQ(lister.launchPath, "/usr/bin/lsbom");
  EXPECT_THAT(lister.arguments,
              ElementsAre("-f", "-p", "fsT", "/System/Library/Receipts/com.example.pkg.bom"));
}

TEST_F(Listing, PassesAPathWithBlanksAsOneArgument) {
  list("/System/Library/Receipts/a b 'c' \"d\"");
  EXPECT_EQ(lister.arguments.back(), "/System/Library/Receipts/a b 'c' \"d\".bom");
}

TEST_F(Listing, ReadsToTheEndBeforeItWaits) {
  list();
  EXPECT_THAT(lister.steps, ElementsAre("connect", "launch", "read", "wait"));
}

TEST_F(Listing, IsWhatTheListerPrintedToTheLastLineBreak) {
  std::string lines;
  for (int i = 0; i < 5000; ++i) lines += " ./a b\t" + std::to_string(i) + "\t\u00E9\n";
  lister.output = lines;
  EXPECT_EQ(list(), lines);
}

TEST_F(Listing, OfAFailedListerIsTheFixedText) {
  lister.output = "./half\t1\n";
  lister.status = 1;
  EXPECT_EQ(list(), "No information available from a Bom file");
}

TEST_F(Listing, OfAFailedListerMayBeAnyBytes) {
  lister.output = "\xFF";
  lister.status = 9;
  EXPECT_EQ(list(), "No information available from a Bom file");
}

TEST_F(Listing, ThatCannotBeReadToItsEndIsTheFixedText) {
  lister.output = "./half\t1\n";
  lister.cannotBeRead = true;
  EXPECT_EQ(list(), "No information available from a Bom file");
  EXPECT_THAT(lister.steps, ElementsAre("connect", "launch", "read"));
}

TEST_F(Listing, OfNoOutputIsTheFixedText) { EXPECT_EQ(list(), "No information available from a Bom file"); }

TEST_F(Listing, OfAListerThatCannotBeStartedFailsOutwards) {
  lister.cannotBeStarted = true;
  EXPECT_THROW(list(), platform::TaskLaunchError);
  EXPECT_THAT(services.alerts, testing::IsEmpty());
}

TEST_F(Listing, ThatIsNotUtf8StopsTheProgram) {
  lister.output = "./caf\xE9\t1\n";
  EXPECT_FATAL_STOP(list());
}

}  // namespace
}  // namespace pelmarix
