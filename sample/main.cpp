// pelmarix-sample: makes a sample Mac volume to look at and to test with.

#include <charconv>
#include <cstdio>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

#include "sample/sample_volume.h"

namespace {

using pelmarix::Result;
using pelmarix::sample::Sizes;

constexpr const char* usage =
    "usage: pelmarix-sample [--entries N] [--receipts N] [--large] [--two-volumes] DIR\n"
    "Makes a sample Mac volume in DIR: an install history, package receipts with their bills of materials,\n"
    "and the system's version.\n"
    "  --entries N    entries in the install history, 400 unless given\n"
    "  --receipts N   package receipts, 300 unless given\n"
    "  --large        100,000 entries, 10,000 receipts, and a bill of materials of 400,000 paths\n"
    "  --two-volumes  the system and the data of a Mac in two volumes, as since macOS Catalina, both in "
    "DIR\n";

constexpr int usageStatus = 64;  // as sysexits has it

// A whole number up to ten million; more would only fill the disk.
std::optional<std::size_t> parseCount(std::string_view argument) {
  std::size_t number = 0;
  const char* const last = argument.data() + argument.size();
  const auto [end, error] = std::from_chars(argument.data(), last, number);
  if (error != std::errc() || end != last || number > 10'000'000) return std::nullopt;
  return number;
}

int fail(const std::string& reason) {
  std::fprintf(stderr, "pelmarix-sample: %s\n%s", reason.c_str(), usage);
  return usageStatus;
}

}  // namespace

int main(int argc, char** argv) {
  bool isLarge = false;
  bool hasTwoVolumes = false;
  std::optional<std::size_t> entries;
  std::optional<std::size_t> receipts;
  std::optional<std::string> folder;
  for (int i = 1; i < argc; ++i) {
    const std::string argument = argv[i];
    if (argument == "--large") {
      isLarge = true;
    } else if (argument == "--two-volumes") {
      hasTwoVolumes = true;
    } else if (argument == "--entries" || argument == "--receipts") {
      const std::optional<std::size_t> count = parseCount(i + 1 < argc ? argv[++i] : "");
      if (!count) return fail(argument + " needs a number from 0 to 10000000");
      (argument == "--entries" ? entries : receipts) = *count;
    } else if (argument.starts_with("-")) {
      return fail("unknown option " + argument);
    } else if (folder || argument.empty()) {
      return fail("one folder is needed");
    } else {
      folder = argument;
    }
  }
  if (!folder) return fail("one folder is needed");

  Sizes sizes = isLarge ? Sizes::large() : Sizes();
  sizes.entries = entries.value_or(sizes.entries);
  sizes.receipts = receipts.value_or(sizes.receipts);
  const auto make = hasTwoVolumes ? pelmarix::sample::makeTwoVolumes : pelmarix::sample::makeVolume;
  const Result<void, std::string> made = make(*folder, sizes);
  if (made) return 0;
  std::fprintf(stderr, "pelmarix-sample: %s\n", made.error().c_str());
  return 1;
}
