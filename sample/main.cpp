// pelmarix-sample: makes a sample Mac volume to look at and to test with.

#include <charconv>
#include <cstdio>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

#include "sample/volume.h"

namespace {

constexpr const char* usage =
    "usage: pelmarix-sample [--entries N] [--receipts N] [--large] DIR\n"
    "Makes a sample Mac volume in DIR: an install history, package receipts with their bills of materials,\n"
    "and the system's version.\n"
    "  --entries N    entries in the install history, 400 unless given\n"
    "  --receipts N   package receipts, 300 unless given\n"
    "  --large        100,000 entries, 10,000 receipts, and a bill of materials of 400,000 paths\n";

constexpr int usageStatus = 64;  // as sysexits has it

/// A whole number up to ten million; more would only fill the disk.
std::optional<std::size_t> parseCount(std::string_view text) {
  std::size_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size() || number > 10'000'000) return std::nullopt;
  return number;
}

int fail(const std::string& reason) {
  std::fprintf(stderr, "pelmarix-sample: %s\n%s", reason.c_str(), usage);
  return usageStatus;
}

}  // namespace

int main(int argc, char** argv) {
  bool isLarge = false;
  std::optional<std::size_t> entries;
  std::optional<std::size_t> receipts;
  std::optional<std::string> folder;
  for (int i = 1; i < argc; ++i) {
    const std::string argument = argv[i];
    if (argument == "--large") {
      isLarge = true;
    } else if (argument == "--entries" || argument == "--receipts") {
      const std::optional<std::size_t> count = i + 1 < argc ? parseCount(argv[++i]) : std::nullopt;
      if (!count) return fail(argument + " needs a number from 0 to 10000000");
      (argument == "--entries" ? entries : receipts) = count;
    } else if (argument.starts_with("-")) {
      return fail("unknown option " + argument);
    } else if (folder || argument.empty()) {
      return fail("one folder is needed");
    } else {
      folder = argument;
    }
  }
  if (!folder) return fail("one folder is needed");

  using pelmarix::sample::Sizes;
  Sizes sizes = isLarge ? Sizes::large() : Sizes();
  sizes.entries = entries.value_or(sizes.entries);
  sizes.receipts = receipts.value_or(sizes.receipts);
  const std::string problem = pelmarix::sample::makeVolume(*folder, sizes);
  if (problem.empty()) return 0;
  std::fprintf(stderr, "pelmarix-sample: %s\n", problem.c_str());
  return 1;
}
