// Stands in for the program in the bundle: prints what the bundle says of itself, one line for each key, from
// the file that lies where the program looks for it.
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "plist/document.h"

int main(int /*count*/, char** arguments) {
  const auto path = std::filesystem::path(arguments[0]).parent_path() / "../Info.plist";
  std::ifstream file(path, std::ios::binary);
  const std::string bytes{std::istreambuf_iterator<char>(file), {}};
  const auto decoded = pelmarix::plist::Document::decode(bytes);
  if (!decoded || decoded->root().type() != pelmarix::plist::Type::dictionary) return 1;
  for (const auto [key, value] : decoded->root().entries()) {
    const std::string text(value.string().value_or(value.boolean().value_or(false) ? "yes" : "no text"));
    std::printf("%s=%s\n", std::string(key).c_str(), text.c_str());
  }
  return 0;
}
