#include "lsbom/command_line.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace pelmarix::lsbom {
namespace {

CommandLine parsed(const std::vector<std::string>& arguments) {
  const auto command = parseCommandLine(arguments);
  EXPECT_TRUE(command);
  return command ? *command : CommandLine();
}

std::string errorOf(const std::vector<std::string>& arguments) {
  const auto command = parseCommandLine(arguments);
  return command ? "" : command.error().message;
}

TEST(CommandLine, TakesFilesAlone) {
  const CommandLine command = parsed({"a.bom", "b.bom"});
  EXPECT_EQ(command.files, (std::vector<std::string>{"a.bom", "b.bom"}));
  EXPECT_EQ(command.options.columns, "");
  EXPECT_FALSE(command.options.architecture);
}

TEST(CommandLine, TakesEveryLetterOfItsOwn) {
  const ListOptions options = parsed({"-b", "-c", "-d", "-f", "-l", "-m", "-s", "-x", "bom"}).options;
  EXPECT_TRUE(options.blockDevices && options.characterDevices && options.folders && options.files &&
              options.links);
  EXPECT_TRUE(options.modificationTimes && options.pathsOnly && options.suppressModes);
}

TEST(CommandLine, SetsNothingButWhatIsNamed) {
  const ListOptions options = parsed({"-f", "bom"}).options;
  EXPECT_TRUE(options.files);
  EXPECT_FALSE(options.blockDevices || options.characterDevices || options.folders || options.links);
  EXPECT_FALSE(options.modificationTimes || options.pathsOnly || options.suppressModes);
}

TEST(CommandLine, TakesLettersTogetherAndTheColumnsBehindThem) {
  for (const std::vector<std::string>& arguments :
       {std::vector<std::string>{"-f", "-p", "fsT", "bom"}, {"-fp", "fsT", "bom"}, {"-fpfsT", "bom"}}) {
    const CommandLine command = parsed(arguments);
    EXPECT_TRUE(command.options.files);
    EXPECT_EQ(command.options.columns, "fsT");
    EXPECT_EQ(command.files, std::vector<std::string>{"bom"});
  }
}

TEST(CommandLine, KnowsEveryColumn) {
  const CommandLine command = parsed({"-p", "fFgGmMsStTuU/?", "bom"});
  EXPECT_EQ(command.options.columns, "fFgGmMsStTuU/?");
}

TEST(CommandLine, TakesTheColumnsThatAreNamedLast) {
  EXPECT_EQ(parsed({"-pf", "-ps", "bom"}).options.columns, "s");
}

TEST(CommandLine, KnowsArchitecturesByName) {
  EXPECT_EQ(parsed({"--arch", "i386", "bom"}).options.architecture, 7U);
  EXPECT_EQ(parsed({"--arch=x86_64", "bom"}).options.architecture, 0x1000007U);
  EXPECT_EQ(parsed({"--arch=arm", "bom"}).options.architecture, 12U);
  EXPECT_EQ(parsed({"--arch=arm64", "bom"}).options.architecture, 0x100000CU);
  EXPECT_EQ(parsed({"--arch=ppc", "bom"}).options.architecture, 18U);
  EXPECT_EQ(parsed({"--arch=ppc64", "bom"}).options.architecture, 0x1000012U);
}

TEST(CommandLine, EndsItsOptionsAtTheFirstFile) {
  EXPECT_EQ(parsed({"bom", "-f"}).files, (std::vector<std::string>{"bom", "-f"}));
  EXPECT_EQ(parsed({"-f", "--", "-s"}).files, std::vector<std::string>{"-s"});
  EXPECT_EQ(parsed({"-", "-s"}).files, (std::vector<std::string>{"-", "-s"}));
}

TEST(CommandLine, RefusesWhatItDoesNotKnow) {
  EXPECT_EQ(errorOf({"-z", "bom"}), "unknown option -z");
  EXPECT_EQ(errorOf({"-fz", "bom"}), "unknown option -z");
  EXPECT_EQ(errorOf({"--files", "bom"}), "unknown option --files");
  EXPECT_EQ(errorOf({"--archive=x", "bom"}), "unknown option --archive");
  EXPECT_EQ(errorOf({"--arch", "vax", "bom"}), "unknown architecture vax");
  EXPECT_EQ(errorOf({"--arch=", "bom"}), "unknown architecture ");
  EXPECT_EQ(errorOf({"-p", "fc", "bom"}), "unknown column c");
  EXPECT_EQ(errorOf({"-p", "cf", "bom"}), "unknown column c");
}

TEST(CommandLine, RefusesAColumnThatIsNamedTwice) {
  EXPECT_EQ(errorOf({"-p", "fsf", "bom"}), "column f is named twice");
}

TEST(CommandLine, RefusesOptionsWithoutTheirValue) {
  EXPECT_EQ(errorOf({"-p"}), "option -p needs a value");
  EXPECT_EQ(errorOf({"-f", "--arch"}), "option --arch needs a value");
  EXPECT_EQ(errorOf({"-p", "", "bom"}), "-p names no column");
}

TEST(CommandLine, RefusesColumnsTogetherWithPathsOnly) {
  EXPECT_EQ(errorOf({"-s", "-p", "f", "bom"}), "-s and -p exclude each other");
}

TEST(CommandLine, RefusesToListNothing) {
  EXPECT_EQ(errorOf({}), "no bill of materials is named");
  EXPECT_EQ(errorOf({"-f"}), "no bill of materials is named");
  EXPECT_EQ(errorOf({"-f", "--"}), "no bill of materials is named");
}

}  // namespace
}  // namespace pelmarix::lsbom
