// Writes a bill of materials for tests that run the lister: write_bom FILE COUNT [PATH ...]
#include <cstdlib>
#include <fstream>
#include <string>

#include "sample/bom_writer.h"
#include "sample/package_contents.h"

int main(int argc, char* argv[]) {
  if (argc < 3) return EXIT_FAILURE;
  auto entries = pelmarix::sample::manyBomEntries(std::stoul(argv[2]));
  for (int i = 3; i < argc; ++i) entries.push_back({.path = argv[i]});
  const std::string bytes = pelmarix::sample::writeBillOfMaterials(entries);
  std::ofstream file(argv[1], std::ios::binary);
  file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  file.close();
  return file ? EXIT_SUCCESS : EXIT_FAILURE;
}
