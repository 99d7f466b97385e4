#include "sample/install_history.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "sample/lifetime.h"
#include "sample/random.h"

namespace pelmarix::sample {
namespace {

using namespace std::chrono_literals;

constexpr Day sierra = 2016y / 9 / 24;
constexpr Day mojave = 2018y / 9 / 28;
// Between these days the Mac didn't look for data.
constexpr Day switchedOff = 2018y / 10 / 20;
constexpr Day switchedOn = 2019y / 5 / 21;

// Content types.
constexpr std::string_view criticalUpdate = "critical-update";
constexpr std::string_view configData = "config-data";
constexpr std::string_view untyped = "";

// What was installed once.
struct Milestone {
  Day day;
  std::string_view name;
  std::string_view version;
  std::string_view package;  // its identifier behind "com.apple.pkg."
  std::string_view contentType = untyped;
};

constexpr auto milestones = std::to_array<Milestone>({
    {delivered, "OS X El Capitan", "10.11.1", "OSInstall"},
    {2015y / 12 / 9, "OS X El Capitan Update", "10.11.2", "update.os.10.11.2Patch.15C50"},
    {2016y / 1 / 20, "OS X El Capitan Update", "10.11.3", "update.os.10.11.3Patch.15D21"},
    {2016y / 3 / 22, "OS X El Capitan Update", "10.11.4", "update.os.10.11.4Patch.15E65"},
    {2016y / 5 / 17, "OS X El Capitan Update", "10.11.5", "update.os.10.11.5Patch.15F34"},
    {2016y / 7 / 19, "OS X El Capitan Update", "10.11.6", "update.os.10.11.6Patch.15G31"},
    {2016y / 9 / 2, "Security Update 2016-001", "10.11.6", "update.security.10.11.6.15G1004"},
    {sierra, "macOS Sierra", "10.12", "OSInstall"},
    {2016y / 10 / 25, "macOS Sierra Update", "10.12.1", "update.os.10.12.1Patch.16B2555"},
    {2016y / 12 / 14, "macOS Sierra Update", "10.12.2", "update.os.10.12.2Patch.16C67"},
    {2017y / 1 / 24, "macOS Sierra Update", "10.12.3", "update.os.10.12.3Patch.16D32"},
    {2017y / 3 / 28, "macOS Sierra Update", "10.12.4", "update.os.10.12.4Patch.16E195"},
    {2017y / 5 / 16, "macOS Sierra Update", "10.12.5", "update.os.10.12.5Patch.16F73"},
    {2017y / 7 / 20, "macOS Sierra Update", "10.12.6", "update.os.10.12.6Patch.16G29"},
    {2017y / 8 / 3, "Certificate Trust Correction", "1.0", "CertificateTrust.16U1", criticalUpdate},
    {2017y / 9 / 27, "macOS High Sierra", "10.13", "OSInstall"},
    {2017y / 10 / 6, "macOS High Sierra 10.13 Supplemental Update", "10.13",
     "update.os.10.13Supplemental.17A405"},
    {2017y / 11 / 1, "macOS High Sierra 10.13.1 Update", "10.13.1", "update.os.10.13.1.17B48"},
    {2017y / 11 / 30, "Security Update 2017-001", "10.13.1", "update.security.10.13.1.17B1002",
     criticalUpdate},
    {2017y / 12 / 7, "macOS 10.13.2 Update", "10.13.2", "update.os.10.13.2.17C88"},
    {2018y / 1 / 9, "macOS High Sierra 10.13.2 Supplemental Update", "10.13.2",
     "update.os.10.13.2Supplemental.17C205"},
    {2018y / 1 / 24, "macOS High Sierra 10.13.3 Update", "10.13.3", "update.os.10.13.3.17D47"},
    {2018y / 3 / 30, "macOS High Sierra 10.13.4 Update", "10.13.4", "update.os.10.13.4.17E199"},
    {2018y / 4 / 26, "Security Update 2018-001", "10.13.4", "update.security.10.13.4.17E202"},
    {2018y / 6 / 2, "macOS High Sierra 10.13.5 Update", "10.13.5", "update.os.10.13.5.17F77"},
    {2018y / 7 / 10, "macOS High Sierra 10.13.6 Update", "10.13.6", "update.os.10.13.6.17G65"},
    {2018y / 8 / 14, "Keyboard Firmware Correction", "1.2", "KeyboardFirmware.17U2", criticalUpdate},
    {mojave, "macOS Mojave", "10.14", "OSInstall"},
    {2018y / 10 / 31, "macOS 10.14.1", "10.14.1", "update.os.10.14.1.18B75"},
    {2018y / 12 / 6, "macOS 10.14.2 Update", "10.14.2", "update.os.10.14.2.18C54"},
    {2019y / 1 / 23, "macOS 10.14.3 Update", "10.14.3", "update.os.10.14.3.18D42"},
    {2019y / 2 / 8, "macOS Mojave 10.14.3 Supplemental Update", "10.14.3",
     "update.os.10.14.3Supplemental.18D109"},
    {2019y / 3 / 26, "macOS 10.14.4 Update", "10.14.4", "update.os.10.14.4.18E226"},
    {2019y / 5 / 14, "macOS 10.14.5 Update", "10.14.5", "update.os.10.14.5.18F132"},
    {2019y / 7 / 23, "macOS 10.14.6 Update", "10.14.6", "update.os.10.14.6.18G84"},
    {2019y / 8 / 2, "macOS Mojave 10.14.6 Supplemental Update", "10.14.6",
     "update.os.10.14.6Supplemental.18G87"},
    {2019y / 8 / 20, "Battery Service Notice", "1.0", "BatteryService.18U4", criticalUpdate},
    {2019y / 10 / 12, "macOS Catalina", "10.15", "OSInstall"},
    {2019y / 10 / 16, "macOS Catalina 10.15 Supplemental Update", "10.15",
     "update.os.10.15Supplemental.19A602"},
    {2019y / 10 / 30, "macOS 10.15.1 Update", "10.15.1", "update.os.10.15.1.19B88"},
    {2019y / 12 / 11, "macOS 10.15.2 Update", "10.15.2", "update.os.10.15.2.19C57"},
    {2020y / 1 / 29, "macOS 10.15.3 Update", "10.15.3", "update.os.10.15.3.19D76"},
    {2020y / 3 / 25, "macOS 10.15.4 Update", "10.15.4", "update.os.10.15.4.19E266"},
    {2020y / 4 / 9, "macOS 10.15.4 Supplemental Update", "10.15.4", "update.os.10.15.4Supplemental.19E287"},
    {2020y / 5 / 27, "macOS 10.15.5 Update", "10.15.5", "update.os.10.15.5.19F96"},
    {2020y / 6 / 2, "macOS Catalina 10.15.5 Supplemental Update", "10.15.5",
     "update.os.10.15.5Supplemental.19F101"},
    {2020y / 7 / 16, "macOS 10.15.6 Update", "10.15.6", "update.os.10.15.6.19G73"},
    {2020y / 8 / 13, "macOS Catalina 10.15.6 Supplemental Update", "10.15.6",
     "update.os.10.15.6Supplemental.19G2021"},
    {2020y / 9 / 25, "macOS 10.15.7 Update", "10.15.7", "update.os.10.15.7.19H2"},
    {2020y / 11 / 6, "macOS Catalina 10.15.7 Supplemental Update", "10.15.7",
     "update.os.10.15.7Supplemental.19H15"},
    {2020y / 12 / 15, "Security Update 2020-001", "10.15.7", "update.security.10.15.7.19H114"},
    {2021y / 1 / 12, "Disk Firmware Correction", "2.0.1", "DiskFirmware.19U7", criticalUpdate},
    {2021y / 2 / 2, "Security Update 2021-001", "10.15.7", "update.security.10.15.7.19H512"},
});

// What was installed again and again while it was around, its version counting up.
struct Series {
  std::string_view name;
  std::string_view versionPrefix;
  unsigned firstVersion;
  std::string_view contentType;
  std::string_view identifier;
  std::string_view processName;
  unsigned weight;  // how often it comes beside the others
  Day from = delivered;
  Day until = copied;
};

constexpr std::string_view updater = "softwareupdated";
constexpr std::string_view installer = "Installer";
constexpr std::string_view store = "storedownloadd";

// Security data stands first.
constexpr std::size_t securityDataCount = 6;
constexpr auto series = std::to_array<Series>({
    {"XProtectPlistConfigData", "", 2078, configData, "com.apple.pkg.XProtectPlistConfigData", updater, 9},
    {"MRT Configuration Data", "1.", 4, configData, "com.apple.pkg.MRTConfigData", updater, 7, delivered,
     mojave},
    {"MRTConfigData", "1.", 35, configData, "com.apple.pkg.MRTConfigData", updater, 7, mojave},
    {"Gatekeeper Configuration Data", "", 94, configData, "com.apple.pkg.GatekeeperConfigData", updater, 9},
    {"Incompatible Kernel Extension Configuration Data", "12.", 1, configData,
     "com.apple.pkg.IncompatibleKextConfigData", updater, 3},
    {"TCC Configuration Data", "15.", 0, configData, "com.apple.pkg.TCCConfigData", updater, 3, mojave},
    {"Core Services Application Configuration Data", "1.0.", 25, configData,
     "com.apple.pkg.CoreServicesAppConfigData", updater, 3},
    {"CoreSuggestions Configuration Data", "", 790, configData, "com.apple.pkg.CoreSuggestionsConfigData",
     updater, 4, sierra},
    {"Chinese Word List Update", "4.", 11, configData, "com.apple.pkg.ChineseWordlistUpdate", updater, 5},
    {"Speech Recognition Data – Français", "2.", 1, configData, "com.apple.pkg.SpeechRecognition.fr", updater,
     1},
    {"Voice Update - Mónica", "6.1.", 0, configData, "com.apple.pkg.Voice.Monica", updater, 1},
    {"Command Line Tools", "9.", 0, untyped, "com.apple.pkg.CLTools_Executables", updater, 2},
    {"Safari", "10.", 0, untyped, "com.apple.pkg.Safari", updater, 2},
    {"Laser Printer Software Update", "4.", 2, untyped, "com.example.printers.laser", updater, 2},
    {"Example Office", "16.", 9, untyped, "com.example.office", installer, 6},
    {"Harbour Mail", "3.", 0, untyped, "com.example.harbour-mail", store, 3},
    {"Draw & Paint <Studio>", "7.", 4, untyped, "com.example.draw-and-paint", installer, 2},
    {"Fotobücher für Freunde", "2.", 0, untyped, "com.example.fotobuecher", store, 2},
    {"毎日メモ", "1.", 8, untyped, "com.example.mainichi-memo", store, 2},
    {"Night Sky 🌒", "5.", 0, untyped, "com.example.night-sky", store, 1},
    {"Backup Helper", "2.5.", 0, untyped, "com.example.backup-helper", installer, 3},
});

struct Entry {
  double seconds;
  std::string_view name;
  std::string version;
  std::string_view contentType;
  std::string identifier;
  std::string_view processName;
};

// Adds milestones, the oldest first, until there are none left or `count` entries.
void addMilestones(std::vector<Entry>& entries, std::size_t count, Random& random) {
  for (const Milestone& milestone : milestones) {
    if (entries.size() == count) return;
    // The machine is up in the daytime; an install is done to the second.
    constexpr std::size_t hour = 3600;
    const auto second = static_cast<double>(7 * hour + random.below(15 * hour));
    const bool isWholeSystem = milestone.package == "OSInstall";
    entries.push_back({.seconds = secondsAt(milestone.day) + second,
                       .name = milestone.name,
                       .version = std::string(milestone.version),
                       .contentType = milestone.contentType,
                       .identifier = "com.apple.pkg." + std::string(milestone.package),
                       .processName = isWholeSystem ? "macOS Installer" : updater});
  }
}

bool isSwitchedOff(double seconds) {
  return seconds >= secondsAt(switchedOff) && seconds < secondsAt(switchedOn);
}

// Picks one of the series that were around then, by weight.
std::size_t pickSeries(double seconds, Random& random) {
  std::array<unsigned, series.size()> weights{};
  unsigned total = 0;
  for (std::size_t i = 0; i < series.size(); ++i) {
    const bool isMissed = i < securityDataCount && isSwitchedOff(seconds);
    if (!isMissed && seconds >= secondsAt(series[i].from) && seconds < secondsAt(series[i].until))
      weights[i] = series[i].weight;
    total += weights[i];
  }
  std::size_t left = random.below(total);
  std::size_t picked = 0;
  while (left >= weights[picked]) left -= weights[picked++];
  return picked;
}

// Adds `count` entries.
void addSeries(std::vector<Entry>& entries, std::size_t count, Random& random) {
  std::array<unsigned, series.size()> installed{};
  const double begin = secondsAt(delivered) + 86400;
  const double step = (secondsAt(copied) - begin) / static_cast<double>(std::max<std::size_t>(count, 1));
  double together = begin;
  std::vector<std::size_t> burst;
  for (std::size_t i = 0; i < count; ++i) {
    // What is found in one look for updates is installed in the same second, each thing once.
    std::size_t picked = pickSeries(together, random);
    if (i == 0 || random.below(3) == 0 || std::find(burst.begin(), burst.end(), picked) != burst.end()) {
      together = begin + step * (static_cast<double>(i) + random.fraction());
      burst.clear();
      picked = pickSeries(together, random);
    }
    burst.push_back(picked);
    const Series& one = series[picked];
    const unsigned version = one.firstVersion + installed[picked]++;
    // Configuration data that waits until it is looked for again comes within some hours.
    const bool waits = one.contentType == configData && isSwitchedOff(together);
    const double seconds =
        waits ? secondsAt(switchedOn) - (secondsAt(switchedOn) - together) / 1000 : together;
    entries.push_back({.seconds = seconds,
                       .name = one.name,
                       .version = std::string(one.versionPrefix) + std::to_string(version),
                       .contentType = one.contentType,
                       .identifier = std::string(one.identifier) + ".16U" + std::to_string(4000 + version),
                       .processName = one.processName});
  }
}

PropertyList dictionaryFor(const Entry& entry) {
  Dictionary dictionary;
  if (!entry.contentType.empty()) dictionary.push_back({"contentType", {std::string(entry.contentType)}});
  dictionary.push_back({"date", {Date{entry.seconds}}});
  dictionary.push_back({"displayName", {std::string(entry.name)}});
  dictionary.push_back({"displayVersion", {entry.version}});
  dictionary.push_back({"packageIdentifiers", {Array{{entry.identifier}}}});
  dictionary.push_back({"processName", {std::string(entry.processName)}});
  return {std::move(dictionary)};
}

}  // namespace

PropertyList installHistory(std::size_t entries) {
  Random random(20151114);
  std::vector<Entry> all;
  addMilestones(all, entries, random);
  addSeries(all, entries - all.size(), random);
  std::stable_sort(all.begin(), all.end(),
                   [](const Entry& one, const Entry& other) { return one.seconds < other.seconds; });

  Array array;
  array.reserve(all.size());
  for (const Entry& entry : all) array.push_back(dictionaryFor(entry));
  return {std::move(array)};
}

}  // namespace pelmarix::sample
