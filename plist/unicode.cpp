#include "plist/unicode.h"

#include <algorithm>
#include <optional>

namespace pelmarix::plist {
namespace {

enum class Encoding { utf8, ascii, latin1, utf16Big, utf16Little, utf32Big, utf32Little };

constexpr char32_t replacementCharacter = 0xFFFD;

/// Reads units of 2 or 4 bytes in either order.
class UnitReader {
 public:
  UnitReader(std::string_view bytes, std::size_t width, bool littleEndian)
      : bytes_(bytes), width_(width), littleEndian_(littleEndian) {}

  bool atEnd() const { return at_ == bytes_.size(); }
  std::size_t position() const { return at_; }
  char32_t peek() const {
    char32_t unit = 0;
    for (std::size_t i = 0; i < width_; ++i) {
      const std::size_t byte = littleEndian_ ? width_ - 1 - i : i;
      unit = unit << 8 | static_cast<unsigned char>(bytes_[at_ + byte]);
    }
    return unit;
  }
  void advance() { at_ += width_; }

  /// The next character of UTF-16; nothing for a surrogate without its partner, which is passed over.
  std::optional<char32_t> utf16Character() {
    const char32_t unit = peek();
    advance();
    if (isLowSurrogate(unit)) return std::nullopt;
    if (!isHighSurrogate(unit)) return unit;
    if (atEnd() || !isLowSurrogate(peek())) return std::nullopt;
    const char32_t low = peek();
    advance();
    return 0x10000 + ((unit - 0xD800) << 10) + (low - 0xDC00);
  }

  /// The next character of UTF-32; nothing for a number that names none.
  std::optional<char32_t> utf32Character() {
    const char32_t unit = peek();
    advance();
    if (unit >= beyondUnicode || isSurrogate(unit)) return std::nullopt;
    return unit;
  }

 private:
  std::string_view bytes_;
  std::size_t width_;
  bool littleEndian_;
  std::size_t at_ = 0;
};

/// Units of `width` bytes, of which the first is a byte-order mark.
Result<std::string_view, Error> wideToUtf8(std::string_view bytes, std::size_t width, bool littleEndian,
                                           Arena& arena) {
  if (bytes.size() % width != 0) return Error{Reason::wrongEncoding, bytes.size()};
  // A unit of UTF-16 takes at most three bytes of UTF-8, one of UTF-32 at most four.
  char* out = arena.reserve(bytes.size() / width * (width == 2 ? 3 : 4));
  UnitReader units(bytes, width, littleEndian);
  units.advance();  // the byte-order mark
  while (!units.atEnd()) {
    const std::size_t start = units.position();
    const auto character = width == 2 ? units.utf16Character() : units.utf32Character();
    if (!character) return Error{Reason::wrongEncoding, start};
    out = putUtf8(*character, out);
  }
  return arena.commit(out);
}

bool equalIgnoringCase(std::string_view text, std::string_view capitals) {
  return std::equal(text.begin(), text.end(), capitals.begin(), capitals.end(), [](char left, char right) {
    return (left >= 'a' && left <= 'z' ? static_cast<char>(left - 'a' + 'A') : left) == right;
  });
}

/// The value of `encoding=` in a declaration at the very start of the text; nothing where none is declared.
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

char* putUtf8(char32_t character, char* out) {
  const auto put = [&out](char32_t byte) { *out++ = static_cast<char>(byte); };
  if (character < 0x80) {
    put(character);
  } else if (character < 0x800) {
    put(0xC0 | character >> 6);
    put(0x80 | (character & 0x3F));
  } else if (character < 0x10000) {
    put(0xE0 | character >> 12);
    put(0x80 | (character >> 6 & 0x3F));
    put(0x80 | (character & 0x3F));
  } else {
    put(0xF0 | character >> 18);
    put(0x80 | (character >> 12 & 0x3F));
    put(0x80 | (character >> 6 & 0x3F));
    put(0x80 | (character & 0x3F));
  }
  return out;
}

std::string_view latin1ToUtf8(std::string_view bytes, Arena& arena) {
  const auto wide = std::count_if(bytes.begin(), bytes.end(), [](char byte) { return (byte & 0x80) != 0; });
  char* out = arena.reserve(bytes.size() + static_cast<std::size_t>(wide));
  for (const char byte : bytes) out = putUtf8(static_cast<unsigned char>(byte), out);
  return arena.commit(out);
}

std::string_view lenientUtf16ToUtf8(std::string_view bytes, Arena& arena) {
  char* out = arena.reserve(bytes.size() / 2 * 3);
  UnitReader units(bytes, 2, false);
  while (!units.atEnd()) out = putUtf8(units.utf16Character().value_or(replacementCharacter), out);
  return arena.commit(out);
}

Result<std::string_view, Error> xmlTextAsUtf8(std::string_view bytes, Arena& arena) {
  using namespace std::string_view_literals;
  // The mark of little-endian UTF-32 begins with that of UTF-16, so it is looked for first.
  if (bytes.starts_with("\xFF\xFE\0\0"sv)) return wideToUtf8(bytes, 4, true, arena);
  if (bytes.starts_with("\0\0\xFE\xFF"sv)) return wideToUtf8(bytes, 4, false, arena);
  if (bytes.starts_with("\xFF\xFE"sv)) return wideToUtf8(bytes, 2, true, arena);
  if (bytes.starts_with("\xFE\xFF"sv)) return wideToUtf8(bytes, 2, false, arena);
  if (bytes.starts_with("\xEF\xBB\xBF"sv)) return bytes.substr(3);

  const std::optional<std::string_view> name = declaredEncoding(bytes);
  if (!name || equalIgnoringCase(*name, "UTF-8")) return bytes;
  const auto offset = static_cast<std::size_t>(name->data() - bytes.data());
  if (equalIgnoringCase(*name, "ISO-8859-1")) return latin1ToUtf8(bytes, arena);
  if (equalIgnoringCase(*name, "US-ASCII")) {
    const char* const last = bytes.data() + bytes.size();
    const char* const wrong = findNonAscii(bytes.data(), last);
    if (wrong == last) return bytes;
    return Error{Reason::wrongEncoding, static_cast<std::size_t>(wrong - bytes.data())};
  }
  // Text in these encodings without a byte-order mark would not have been recognised as a declaration.
  if (equalIgnoringCase(*name, "UTF-16") || equalIgnoringCase(*name, "UTF-32"))
    return Error{Reason::wrongEncoding, offset};
  return Error{Reason::unknownEncoding, offset};
}

}  // namespace pelmarix::plist
