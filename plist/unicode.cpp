#include "plist/unicode.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "base/utf8.h"

namespace pelmarix::plist {
namespace {

constexpr char32_t replacementCharacter = 0xFFFD;

bool isHighSurrogate(char32_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
bool isLowSurrogate(char32_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }

// Reads UTF-16 or UTF-32, units of 2 or 4 bytes in either order.
class WideText {
 public:
  WideText(std::string_view bytes, std::size_t width, bool isLittleEndian)
      : bytes_(bytes), width_(width), isLittleEndian_(isLittleEndian) {}

  bool atEnd() const { return at_ == bytes_.size(); }
  std::size_t position() const { return at_; }
  void skipByteOrderMark() { at_ += width_; }

  // The number of the next character; where the text is malformed, one that names none.
  char32_t next() {
    const char32_t first = unit();
    at_ += width_;
    if (width_ == 4 || !isHighSurrogate(first) || atEnd() || !isLowSurrogate(unit())) return first;
    const char32_t second = unit();
    at_ += width_;
    return 0x10000 + ((first - 0xD800) << 10) + (second - 0xDC00);
  }

 private:
  char32_t unit() const {
    char32_t unit = 0;
    for (std::size_t i = 0; i < width_; ++i) {
      const std::size_t byte = isLittleEndian_ ? width_ - 1 - i : i;
      unit = unit << 8 | static_cast<unsigned char>(bytes_[at_ + byte]);
    }
    return unit;
  }

  std::string_view bytes_;
  std::size_t width_;
  bool isLittleEndian_;
  std::size_t at_ = 0;
};

// Units of `width` bytes, of which the first is a byte-order mark.
Result<std::string_view, Error> wideToUtf8(std::string_view bytes, std::size_t width, bool isLittleEndian,
                                           Tree& tree) {
  if (bytes.size() % width != 0) return Error{Reason::wrongEncoding, bytes.size()};
  std::string text;
  // A unit of UTF-16 takes at most three bytes of UTF-8, one of UTF-32 at most four.
  text.reserve(bytes.size() / width * (width == 2 ? 3 : 4));
  WideText wide(bytes, width, isLittleEndian);
  wide.skipByteOrderMark();
  while (!wide.atEnd()) {
    const std::size_t start = wide.position();
    const char32_t character = wide.next();
    if (!isUnicodeCharacter(character)) return Error{Reason::wrongEncoding, start};
    appendUtf8(character, text);
  }
  return tree.keep(std::move(text));
}

bool equalIgnoringCase(std::string_view text, std::string_view capitals) {
  return std::equal(text.begin(), text.end(), capitals.begin(), capitals.end(), [](char left, char right) {
    return (left >= 'a' && left <= 'z' ? static_cast<char>(left - 'a' + 'A') : left) == right;
  });
}

// The value of `encoding=` in a declaration at the very start of the text; nothing where none is declared.
std::optional<std::string_view> declaredEncoding(std::string_view text) {
  constexpr std::string_view opening = "<?xml";
  constexpr std::string_view attribute = "encoding=";
  if (!text.starts_with(opening)) return std::nullopt;
  std::string_view declaration = text.substr(0, text.find('>'));
  declaration = declaration.substr(0, declaration.find('?', opening.size()));
  const std::size_t found = declaration.find(attribute);
  if (found == std::string_view::npos) return std::nullopt;
  const std::string_view quoted = declaration.substr(found + attribute.size());
  if (quoted.empty() || (quoted[0] != '"' && quoted[0] != '\'')) return std::nullopt;
  const std::size_t closing = quoted.find(quoted[0], 1);
  if (closing == std::string_view::npos) return std::nullopt;
  return quoted.substr(1, closing - 1);
}

}  // namespace

bool isUnicodeCharacter(char32_t number) {
  return number <= 0x10FFFF && !isHighSurrogate(number) && !isLowSurrogate(number);
}

void appendUtf8(char32_t character, std::string& text) {
  const auto append = [&text](char32_t byte) { text += static_cast<char>(byte); };
  if (character < 0x80) {
    append(character);
  } else if (character < 0x800) {
    append(0xC0 | character >> 6);
    append(0x80 | (character & 0x3F));
  } else if (character < 0x10000) {
    append(0xE0 | character >> 12);
    append(0x80 | (character >> 6 & 0x3F));
    append(0x80 | (character & 0x3F));
  } else {
    append(0xF0 | character >> 18);
    append(0x80 | (character >> 12 & 0x3F));
    append(0x80 | (character >> 6 & 0x3F));
    append(0x80 | (character & 0x3F));
  }
}

std::string latin1ToUtf8(std::string_view bytes) {
  std::string text;
  const auto wide = std::count_if(bytes.begin(), bytes.end(), [](char byte) { return (byte & 0x80) != 0; });
  text.reserve(bytes.size() + static_cast<std::size_t>(wide));
  for (const char byte : bytes) appendUtf8(static_cast<unsigned char>(byte), text);
  return text;
}

std::string lenientUtf16ToUtf8(std::string_view bytes) {
  std::string text;
  text.reserve(bytes.size() / 2 * 3);
  WideText wide(bytes, 2, false);
  while (!wide.atEnd()) {
    const char32_t character = wide.next();
    appendUtf8(isUnicodeCharacter(character) ? character : replacementCharacter, text);
  }
  return text;
}

Result<std::string_view, Error> xmlTextAsUtf8(std::string_view bytes, Tree& tree) {
  using namespace std::string_view_literals;
  // The mark of little-endian UTF-32 begins with that of UTF-16, so it is looked for first.
  if (bytes.starts_with("\xFF\xFE\0\0"sv)) return wideToUtf8(bytes, 4, true, tree);
  if (bytes.starts_with("\0\0\xFE\xFF"sv)) return wideToUtf8(bytes, 4, false, tree);
  if (bytes.starts_with("\xFF\xFE"sv)) return wideToUtf8(bytes, 2, true, tree);
  if (bytes.starts_with("\xFE\xFF"sv)) return wideToUtf8(bytes, 2, false, tree);

  // None behind UTF-8's mark, which stands for itself.
  const std::optional<std::string_view> name = declaredEncoding(bytes);
  if (!name || equalIgnoringCase(*name, "UTF-8")) return bytes;
  if (equalIgnoringCase(*name, "ISO-8859-1")) return tree.keep(latin1ToUtf8(bytes));
  if (equalIgnoringCase(*name, "US-ASCII")) {
    const char* const last = bytes.data() + bytes.size();
    const char* const wrong = findNonAscii(bytes.data(), last);
    if (wrong == last) return bytes;
    return Error{Reason::wrongEncoding, static_cast<std::size_t>(wrong - bytes.data())};
  }
  // Text in these encodings without a byte-order mark would not have been recognised as a declaration.
  const bool isWide = equalIgnoringCase(*name, "UTF-16") || equalIgnoringCase(*name, "UTF-32");
  return Error{isWide ? Reason::wrongEncoding : Reason::unknownEncoding,
               static_cast<std::size_t>(name->data() - bytes.data())};
}

}  // namespace pelmarix::plist
