// The memory that decoding one install history takes, from reading the file to the records, measured in a
// process of its own: prints the file's size, the growth of the process's peak, and the ratio of the two.
#include <sys/resource.h>

#include <cstdio>
#include <fstream>
#include <string>

#include "history/install_history_record.h"

namespace {

std::size_t peakInBytes() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
#ifdef __APPLE__
  return static_cast<std::size_t>(usage.ru_maxrss);
#else
  return static_cast<std::size_t>(usage.ru_maxrss) * 1024;
#endif
}

std::string contents(const char* path) {
  std::ifstream file(path, std::ios::binary | std::ios::ate);
  std::string bytes(static_cast<std::size_t>(file.tellg()), '\0');
  file.seekg(0);
  file.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  return bytes;
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 2) {
    std::fprintf(stderr, "usage: plist_memory FILE\n");
    return 2;
  }
  const std::size_t before = peakInBytes();
  const std::string bytes = contents(arguments[1]);
  const auto records = pelmarix::decodeInstallHistory(bytes);
  const std::size_t growth = peakInBytes() - before;
  if (!records) {
    std::fprintf(stderr, "plist_memory: not an install history\n");
    return 1;
  }
  std::printf("%zu records, file %zu bytes, peak %zu bytes, ratio %.2f\n", records->size(), bytes.size(),
              growth, static_cast<double>(growth) / static_cast<double>(bytes.size()));
  return 0;
}
