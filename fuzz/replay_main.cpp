// Runs a fuzz target on files: each argument is a file or a folder of files. Inputs that once were findings
// stay in the committed corpus, so the ordinary test run sees them again. A broken promise ends the process.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

bool replay(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  const std::vector<char> bytes{std::istreambuf_iterator<char>(file), {}};
  if (!file.good() && !file.eof()) return false;
  // A block of exactly the file's size lets the address sanitizer see a read past its end.
  const std::vector<std::uint8_t> exact(bytes.begin(), bytes.end());
  LLVMFuzzerTestOneInput(exact.data(), exact.size());
  return true;
}

}  // namespace

int main(int count, char** arguments) {
  std::size_t replayed = 0;
  for (int i = 1; i < count; ++i) {
    const std::filesystem::path path = arguments[i];
    if (!std::filesystem::is_directory(path)) {
      if (!replay(path)) return 1;
      ++replayed;
      continue;
    }
    for (const auto& entry : std::filesystem::directory_iterator(path)) {
      if (!replay(entry.path())) return 1;
      ++replayed;
    }
  }
  std::printf("%zu inputs replayed\n", replayed);
  return replayed == 0 ? 1 : 0;
}
