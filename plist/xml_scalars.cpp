#include "plist/xml_scalars.h"

namespace pelmarix::plist {
namespace {

/// The six bits of a base64 letter, "=" as none; -1 for any other character.
int base64Bits(char letter) {
  if (letter >= 'A' && letter <= 'Z') return letter - 'A';
  if (letter >= 'a' && letter <= 'z') return letter - 'a' + 26;
  if (letter >= '0' && letter <= '9') return letter - '0' + 52;
  if (letter == '+') return 62;
  if (letter == '/') return 63;
  return letter == '=' ? 0 : -1;
}

bool isSpace(char character) { return character == ' ' || (character >= '\t' && character <= '\r'); }

}  // namespace

std::string decodeBase64(std::string_view text) {
  std::string bytes;
  unsigned group = 0;
  int letters = 0;
  int padding = 0;
  for (const char letter : text) {
    if (letter == '=') {
      ++padding;
    } else if (!isSpace(letter)) {
      padding = 0;
    }
    const int bits = base64Bits(letter);
    if (bits < 0) continue;
    group = group << 6 | static_cast<unsigned>(bits);
    if (++letters < 4) continue;
    bytes += static_cast<char>(group >> 16 & 0xFF);
    if (padding < 2) bytes += static_cast<char>(group >> 8 & 0xFF);
    if (padding < 1) bytes += static_cast<char>(group & 0xFF);
    letters = 0;
    group = 0;
  }
  return bytes;
}

}  // namespace pelmarix::plist
