#include "qt/services/settings_user_defaults.h"

#include <gmock/gmock.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <memory>

#include "tests/support/temporary_folder.h"

namespace pelmarix::qt {
namespace {

/// A user's configuration folder.
class UserDefaultsFile : public testing::Test {
 protected:
  UserDefaultsFile() { beAnotherUser(); }
  ~UserDefaultsFile() override { unsetenv("XDG_CONFIG_HOME"); }

  /// Qt keeps in mind what it read of a file whose size and time are the same as before.
  void beAnotherUser() {
    configuration = std::make_unique<test::TemporaryFolder>();
    setenv("XDG_CONFIG_HOME", configuration->path().c_str(), 1);
  }
  void write(const std::string& contents) {
    beAnotherUser();
    configuration->addFile("pelmarix/pelmarix.ini", contents);
  }
  std::string file() const { return *configuration / "pelmarix/pelmarix.ini"; }
  /// What a later start of the program reads.
  static double storedDouble() { return SettingsUserDefaults().doubleForKey("key"); }
  static bool storedBool() { return SettingsUserDefaults().boolForKey("key"); }

  std::unique_ptr<test::TemporaryFolder> configuration;
};

TEST_F(UserDefaultsFile, GivesZeroAndFalseForMissingKeys) {
  EXPECT_EQ(storedDouble(), 0.0);
  EXPECT_FALSE(storedBool());
  EXPECT_FALSE(std::filesystem::exists(file()));
}

TEST_F(UserDefaultsFile, GivesEveryDoubleBackToTheLastBit) {
  using Limits = std::numeric_limits<double>;
  std::vector<double> values = {0.0,
                                -0.0,
                                12.0,
                                43200.0,
                                0.1,
                                1.0 / 3,
                                574682412.12345678,
                                -1e-300,
                                1e300,
                                Limits::max(),
                                Limits::lowest(),
                                Limits::min(),
                                Limits::denorm_min(),
                                Limits::epsilon(),
                                Limits::infinity(),
                                -Limits::infinity(),
                                123456789012345678.0,
                                std::nextafter(43200.0, 0.0),
                                std::nextafter(1.0, 2.0)};
  // A fixed sequence that covers all exponents.
  std::uint64_t bits = 1;
  for (int index = 0; index < 40; ++index) {
    bits = bits * 6364136223846793005U + 1442695040888963407U;
    if (const double value = std::bit_cast<double>(bits); !std::isnan(value)) values.push_back(value);
  }
  for (const double value : values) {
    SettingsUserDefaults().setDoubleForKey(value, "key");
    EXPECT_EQ(std::bit_cast<std::uint64_t>(storedDouble()), std::bit_cast<std::uint64_t>(value)) << value;
  }
}

TEST_F(UserDefaultsFile, GivesNotANumberBack) {
  SettingsUserDefaults().setDoubleForKey(std::numeric_limits<double>::quiet_NaN(), "key");
  EXPECT_TRUE(std::isnan(storedDouble()));
}

TEST_F(UserDefaultsFile, GivesTruthValuesBack) {
  SettingsUserDefaults().setBoolForKey(true, "key");
  EXPECT_TRUE(storedBool());
  SettingsUserDefaults().setBoolForKey(false, "key");
  EXPECT_FALSE(storedBool());
}

TEST_F(UserDefaultsFile, IsWrittenAtEachChange) {
  SettingsUserDefaults defaults;
  defaults.setDoubleForKey(13.0, "fontSize");
  EXPECT_EQ(test::contentsOf(file()), "[General]\nfontSize=13\n");
  defaults.setBoolForKey(true, "noUpdateCheck");
  EXPECT_EQ(test::contentsOf(file()), "[General]\nfontSize=13\nnoUpdateCheck=true\n");
  EXPECT_EQ(SettingsUserDefaults().doubleForKey("fontSize"), 13.0);
}

TEST_F(UserDefaultsFile, IsTheOnlyOneWritten) {
  SettingsUserDefaults().setDoubleForKey(13.0, "fontSize");
  std::vector<std::string> files;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(configuration->path()))
    if (entry.is_regular_file()) files.push_back(entry.path().native());
  EXPECT_THAT(files, testing::ElementsAre(file()));
}

TEST_F(UserDefaultsFile, KeepsWhatOthersStoredInIt) {
  write("[General]\nfontSize=14\nother=\"a, b\"\n");
  SettingsUserDefaults().setDoubleForKey(15.0, "fontSize");
  EXPECT_EQ(test::contentsOf(file()), "[General]\nfontSize=15\nother=\"a, b\"\n");
}

TEST_F(UserDefaultsFile, GivesNumbersThatWereWrittenByHand) {
  for (const auto& [text, value] :
       {std::pair{"43200", 43200.0}, std::pair{"3.5", 3.5}, std::pair{"-100", -100.0},
        std::pair{"\"12.5\"", 12.5}, std::pair{"1e3", 1000.0}, std::pair{" 7 ", 7.0},
        std::pair{"0.30000000000000004", 0.30000000000000004}}) {
    write(std::string("[General]\nkey=") + text + "\n");
    EXPECT_EQ(storedDouble(), value) << text;
  }
}

TEST_F(UserDefaultsFile, GivesZeroForWhatIsNoNumber) {
  for (const std::string text :
       {"", "large", "12pt", "3,5", "@Invalid()", "true", "0x10", "@Rect(1 2 3 4)"}) {
    write("[General]\nkey=" + text + "\n");
    EXPECT_EQ(storedDouble(), 0.0) << text;
  }
}

TEST_F(UserDefaultsFile, GivesTruthValuesThatWereWrittenByHand) {
  for (const std::string text : {"true", "True", "TRUE", "yes", "YES", "1", "1.0", "2", "-1", "\"true\""}) {
    write("[General]\nkey=" + text + "\n");
    EXPECT_TRUE(storedBool()) << text;
  }
  for (const std::string text :
       {"false", "FALSE", "no", "NO", "0", "0.0", "", "banana", "@Invalid()", "true, true"}) {
    write("[General]\nkey=" + text + "\n");
    EXPECT_FALSE(storedBool()) << text;
  }
}

TEST_F(UserDefaultsFile, ThatIsBrokenReadsAsMissingAndCanBeWritten) {
  for (const std::string& contents :
       {std::string("\x7F\x45LF\0\x01\xFF\xFE\n\n[[[", 13), std::string("key"),
        std::string("[General\nkeys=12"), std::string("<?xml version=\"1.0\"?>"), std::string(100'000, '\0'),
        std::string(100'000, '['), std::string("%\n=\n]\\x")}) {
    write(contents);
    EXPECT_EQ(storedDouble(), 0.0);
    EXPECT_FALSE(storedBool());
    SettingsUserDefaults().setDoubleForKey(14.0, "key");
    EXPECT_EQ(storedDouble(), 14.0);
  }
}

TEST_F(UserDefaultsFile, ThatIsAFolderReadsAsMissing) {
  configuration->addFolder("pelmarix/pelmarix.ini");
  SettingsUserDefaults defaults;
  EXPECT_EQ(defaults.doubleForKey("key"), 0.0);
  defaults.setDoubleForKey(14.0, "key");
  EXPECT_EQ(defaults.doubleForKey("key"), 14.0);
}

TEST_F(UserDefaultsFile, ThatMayNotBeReadOrWrittenReadsAsMissing) {
  write("[General]\nkey=14\n");
  chmod(configuration->path().c_str(), 0755);
  chmod(file().c_str(), 0);
  const auto values = [] {
    SettingsUserDefaults defaults;
    const double before = defaults.doubleForKey("key");
    defaults.setDoubleForKey(15.0, "key");
    return std::to_string(before) + " " + std::to_string(defaults.doubleForKey("key"));
  };
  EXPECT_EQ(test::withoutPrivileges(values), "0.000000 15.000000");
  chmod(file().c_str(), 0600);
  EXPECT_EQ(test::contentsOf(file()), "[General]\nkey=14\n");
}

}  // namespace
}  // namespace pelmarix::qt
