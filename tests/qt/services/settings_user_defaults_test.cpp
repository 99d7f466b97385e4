#include "qt/services/settings_user_defaults.h"

#include <gmock/gmock.h>
#include <sys/file.h>

#include <QStringList>
#include <QVariantMap>
#include <bit>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <limits>
#include <memory>

#include "tests/support/temporary_folder.h"

namespace pelmarix::qt {
namespace {

// As `defaults write` stores them with and without a type.
TEST(StoredValue, IsANumberAsTheSystemReadsIt) {
  for (const QVariant& twelve : {QVariant(12), QVariant(12LL), QVariant(12.0), QVariant(QStringLiteral("12")),
                                 QVariant(QStringLiteral("  12")), QVariant(QStringLiteral("12.0\n"))})
    EXPECT_EQ(doubleOf(twelve), 12.0) << twelve.typeName();
  EXPECT_EQ(doubleOf(QVariant(true)), 1.0);
  EXPECT_TRUE(std::isnan(doubleOf(QVariant(std::nan("")))));
  for (const QVariant& none : {QVariant(), QVariant(QStringLiteral("nan")), QVariant(QStringLiteral("inf")),
                               QVariant(QStringLiteral("abc")), QVariant(QByteArray("nan")),
                               QVariant(QStringList{QStringLiteral("12")}), QVariant(QVariantMap())})
    EXPECT_EQ(doubleOf(none), 0.0) << none.typeName();
}

TEST(StoredValue, IsATruthValueAsTheSystemReadsIt) {
  for (const QVariant& yes : {QVariant(true), QVariant(1), QVariant(1.0), QVariant(QStringLiteral("YES")),
                              QVariant(QStringLiteral("true")), QVariant(QStringLiteral("1"))})
    EXPECT_TRUE(boolOf(yes)) << yes.typeName();
  for (const QVariant& no :
       {QVariant(), QVariant(false), QVariant(0), QVariant(0.0), QVariant(QStringLiteral("NO")),
        QVariant(QStringLiteral("0")), QVariant(QStringLiteral("nan")), QVariant(QVariantMap())})
    EXPECT_FALSE(boolOf(no)) << no.typeName();
}

// On macOS there is no such file, and the preferences are those of the user who runs the tests.
#ifndef __APPLE__

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
  double storedDouble() {
    startAgain();
    return SettingsUserDefaults().doubleForKey("key");
  }
  bool storedBool() {
    startAgain();
    return SettingsUserDefaults().boolForKey("key");
  }
  /// Moves the file, for Qt also keeps in mind what it wrote.
  void startAgain() {
    if (std::filesystem::exists(file())) write(test::contentsOf(file()));
  }

  std::unique_ptr<test::TemporaryFolder> configuration;
};

TEST_F(UserDefaultsFile, GivesZeroAndFalseForMissingKeys) {
  EXPECT_EQ(storedDouble(), 0.0);
  EXPECT_FALSE(storedBool());
  EXPECT_FALSE(std::filesystem::exists(file()));
}

TEST_F(UserDefaultsFile, KeepsWhatIsNoNumberWhenThatIsStoredAgain) {
  write("[General]\nkey=@Variant(\\0\\0\\0\\x6\\x7f\\xf8\\0\\0\\0\\0\\0\\0)\n");
  {
    SettingsUserDefaults defaults;
    ASSERT_TRUE(std::isnan(defaults.doubleForKey("key")));
    defaults.setDoubleForKey(std::nan(""), "key");
  }
  EXPECT_TRUE(std::isnan(storedDouble()));
}

TEST_F(UserDefaultsFile, GivesEveryFiniteDoubleBackToTheLastBit) {
  using Limits = std::numeric_limits<double>;
  std::vector<double> values = {0.0,
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
                                123456789012345678.0,
                                std::nextafter(43200.0, 0.0),
                                std::nextafter(1.0, 2.0)};
  // A fixed sequence that covers all exponents.
  std::uint64_t bits = 1;
  for (int index = 0; index < 40; ++index) {
    bits = bits * 6364136223846793005U + 1442695040888963407U;
    if (const double value = std::bit_cast<double>(bits); std::isfinite(value)) values.push_back(value);
  }
  for (const double value : values) {
    SettingsUserDefaults().setDoubleForKey(value, "key");
    EXPECT_EQ(std::bit_cast<std::uint64_t>(storedDouble()), std::bit_cast<std::uint64_t>(value)) << value;
  }
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
        std::pair{"0.30000000000000004", 0.30000000000000004}, std::pair{"\"  12\"", 12.0},
        std::pair{"\"12\\t\"", 12.0}, std::pair{"+.5", 0.5}}) {
    write(std::string("[General]\nkey=") + text + "\n");
    EXPECT_EQ(storedDouble(), value) << text;
  }
}

TEST_F(UserDefaultsFile, GivesZeroForWhatIsNoNumber) {
  for (const std::string text :
       {"", "large", "12pt", "3,5", "@Invalid()", "true", "0x10", "@Rect(1 2 3 4)", "nan", "NaN", "-nan",
        "inf", "-inf", "+infinity", "\" nan\"", "nan(1)", "1e999", "@ByteArray(nan)"}) {
    write("[General]\nkey=" + text + "\n");
    EXPECT_EQ(storedDouble(), 0.0) << text;
    EXPECT_EQ(storedBool(), text == "true") << text;
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

TEST_F(UserDefaultsFile, IsMadeInFoldersThatAreTheUsersAlone) {
  setenv("XDG_CONFIG_HOME", (*configuration / "home/.config").c_str(), 1);
  const mode_t usual = umask(0022);
  SettingsUserDefaults().setDoubleForKey(14.0, "key");
  umask(usual);
  EXPECT_EQ(test::contentsOf(*configuration / "home/.config/pelmarix/pelmarix.ini"), "[General]\nkey=14\n");
  for (const char* folder : {"home", "home/.config", "home/.config/pelmarix"})
    EXPECT_EQ(std::filesystem::status(*configuration / folder).permissions(),
              std::filesystem::perms::owner_all)
        << folder;
}

// What stands in the lock's place, when the program has set a value twice: how long that took, and what is
// stored then.
struct Locked {
  std::chrono::duration<double> time;
  double value;
  bool isStored;
};

Locked setTwice(const std::string& file) {
  const auto begin = std::chrono::steady_clock::now();
  SettingsUserDefaults defaults;
  defaults.setDoubleForKey(14.0, "key");
  defaults.setDoubleForKey(15.0, "key");
  const double value = defaults.doubleForKey("key");
  return {std::chrono::steady_clock::now() - begin, value,
          std::filesystem::exists(file) && test::contentsOf(file) == "[General]\nkey=15\n"};
}

constexpr std::chrono::milliseconds aSecondAndSlowWriting(1500);

TEST_F(UserDefaultsFile, IsWrittenWhereALockWasLeftBehind) {
  // Of a program that ended while it wrote, and of one on another machine.
  for (const std::string contents : {"", "1\nother\nelsewhere\nid\nid\n", "\xFF"}) {
    beAnotherUser();
    const std::string lock = configuration->addFile("pelmarix/pelmarix.ini.lock", contents);
    std::filesystem::last_write_time(lock,
                                     std::filesystem::file_time_type::clock::now() - std::chrono::seconds(5));
    const Locked locked = setTwice(file());
    EXPECT_LT(locked.time, aSecondAndSlowWriting) << contents;
    EXPECT_TRUE(locked.isStored) << contents;
    EXPECT_FALSE(std::filesystem::exists(lock)) << contents;
  }
}

TEST_F(UserDefaultsFile, KeepsValuesForThisRunWhileOthersLockIt) {
  beAnotherUser();
  const std::string lock = configuration->addFile("pelmarix/pelmarix.ini.lock");
  const int held = open(lock.c_str(), O_WRONLY);
  ASSERT_EQ(flock(held, LOCK_EX), 0);
  const Locked locked = setTwice(file());
  EXPECT_LT(locked.time, aSecondAndSlowWriting);
  EXPECT_EQ(locked.value, 15.0);
  EXPECT_FALSE(std::filesystem::exists(file()));
  close(held);
}

TEST_F(UserDefaultsFile, WritesWhatItKeptWithTheNextValue) {
  beAnotherUser();
  const std::string lock = configuration->addFolder("pelmarix/pelmarix.ini.lock");
  SettingsUserDefaults defaults;
  defaults.setDoubleForKey(14.0, "fontSize");
  defaults.setBoolForKey(true, "noUpdateCheck");
  EXPECT_FALSE(std::filesystem::exists(file()));
  std::filesystem::remove(lock);
  defaults.setDoubleForKey(15.0, "fontSize");
  EXPECT_EQ(test::contentsOf(file()), "[General]\nfontSize=15\nnoUpdateCheck=true\n");
}

TEST_F(UserDefaultsFile, DoesNotWaitForALockThatIsNoFile) {
  const auto atLock = [&](auto make) {
    beAnotherUser();
    configuration->addFolder("pelmarix");
    make("pelmarix/pelmarix.ini.lock");
    const Locked locked = setTwice(file());
    EXPECT_LT(locked.time, aSecondAndSlowWriting);
    EXPECT_EQ(locked.value, 15.0);
    EXPECT_TRUE(std::filesystem::is_symlink(file() + ".lock") || std::filesystem::exists(file() + ".lock"));
  };
  atLock([&](const char* lock) { configuration->addFolder(lock); });
  atLock([&](const char* lock) { configuration->addFolder(std::string(lock) + "/with/folders"); });
  atLock([&](const char* lock) { configuration->addFifo(lock); });
  atLock([&](const char* lock) { configuration->addLink(lock, "nowhere"); });
}

TEST_F(UserDefaultsFile, ThatIsAFifoReadsAsMissing) {
  configuration->addFolder("pelmarix");
  configuration->addFifo("pelmarix/pelmarix.ini");
  SettingsUserDefaults defaults;
  EXPECT_EQ(defaults.doubleForKey("key"), 0.0);
  defaults.setDoubleForKey(14.0, "key");
  EXPECT_EQ(defaults.doubleForKey("key"), 14.0);
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

#endif

}  // namespace
}  // namespace pelmarix::qt
