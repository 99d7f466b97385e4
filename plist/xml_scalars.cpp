#include "plist/xml_scalars.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <locale>
#include <optional>
#include <sstream>

#include "base/date.h"
#include "base/utf8.h"

namespace pelmarix::plist {
namespace {

// The six bits of a base64 letter, "=" as none; -1 for any other character.
int base64Bits(char letter) {
  if (letter >= 'A' && letter <= 'Z') return letter - 'A';
  if (letter >= 'a' && letter <= 'z') return letter - 'a' + 26;
  if (letter >= '0' && letter <= '9') return letter - '0' + 52;
  if (letter == '+') return 62;
  if (letter == '/') return 63;
  return letter == '=' ? 0 : -1;
}

bool isSpace(char character) { return character == ' ' || (character >= '\t' && character <= '\r'); }

bool isDigit(char character) { return character >= '0' && character <= '9'; }

char lowercase(char letter) {
  return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

void skipSpace(std::string_view& text) {
  while (!text.empty() && isSpace(text.front())) text.remove_prefix(1);
}

// Takes a sign off the text; true when it was a minus.
bool takeSign(std::string_view& text) {
  const bool negative = text.starts_with('-');
  if (negative || text.starts_with('+')) text.remove_prefix(1);
  return negative;
}

std::size_t takeDigits(std::string_view& text) {
  const auto end = std::find_if_not(text.begin(), text.end(), isDigit);
  const auto count = static_cast<std::size_t>(end - text.begin());
  text.remove_prefix(count);
  return count;
}

bool isDecimalNumber(std::string_view text) {
  takeSign(text);
  std::size_t digits = takeDigits(text);
  if (text.starts_with('.')) {
    text.remove_prefix(1);
    digits += takeDigits(text);
  }
  if (digits == 0) return false;
  if (text.starts_with('e') || text.starts_with('E')) {
    text.remove_prefix(1);
    takeSign(text);
    if (takeDigits(text) == 0) return false;
  }
  return text.empty();
}

// A number that isDecimalNumber. The stream reads it the same way in every locale, which strtod doesn't, and
// every standard library has it, which can't be said of from_chars.
double decimalNumber(std::string_view text) {
  std::istringstream stream{std::string(text)};
  stream.imbue(std::locale::classic());
  double number = 0;
  stream >> number;
  // The stream stops at the largest finite number instead.
  if (stream.fail() && std::fabs(number) == std::numeric_limits<double>::max())
    return std::copysign(std::numeric_limits<double>::infinity(), number);
  return number;
}

// "nan", "inf" or "infinity".
std::optional<double> realWord(std::string_view text) {
  constexpr std::string_view longest = "+infinity";
  if (text.size() > longest.size()) return std::nullopt;
  std::string word(text);
  std::transform(word.begin(), word.end(), word.begin(), lowercase);
  if (word == "nan") return std::numeric_limits<double>::quiet_NaN();
  std::string_view rest = word;
  const bool negative = takeSign(rest);
  if (rest != "inf" && rest != "infinity") return std::nullopt;
  return negative ? -std::numeric_limits<double>::infinity() : std::numeric_limits<double>::infinity();
}

}  // namespace

Result<Node, Reason> readInteger(std::string_view text) {
  skipSpace(text);
  const bool isNegative = takeSign(text);
  skipSpace(text);
  const bool isHexadecimal = text.starts_with("0x") || text.starts_with("0X");
  if (isHexadecimal) text.remove_prefix(2);

  constexpr std::uint64_t largestNegative = std::uint64_t{1} << 63;
  std::uint64_t number = 0;
  const char* const last = text.data() + text.size();
  const auto [end, error] = std::from_chars(text.data(), last, number, isHexadecimal ? 16 : 10);
  if (error == std::errc::invalid_argument || end != last) return Reason::malformedInteger;
  if (error == std::errc::result_out_of_range || (isNegative && number > largestNegative))
    return Reason::integerOutOfRange;
  return Node::integer(isNegative ? 0 - number : number, isNegative && number != 0);
}

Result<Node, Reason> readReal(std::string_view text) {
  if (const std::optional<double> word = realWord(text)) return Node(Type::real, *word);
  skipSpace(text);
  if (!isDecimalNumber(text)) return Reason::malformedReal;
  return Node(Type::real, decimalNumber(text));
}

Result<Node, Reason> readDate(std::string_view text) {
  const bool negative = text.starts_with('-');
  if (negative) text.remove_prefix(1);
  constexpr std::string_view form = "-00-00T00:00:00Z";
  if (text.size() < 4 + form.size() || text.size() > 9 + form.size()) return Reason::malformedDate;

  const std::string_view rest = text.substr(text.size() - form.size());
  int year = 0;
  for (const char digit : text.substr(0, text.size() - form.size())) {
    if (!isDigit(digit)) return Reason::malformedDate;
    year = year * 10 + (digit - '0');
  }
  for (std::size_t i = 0; i < form.size(); ++i)
    if (form[i] == '0' ? !isDigit(rest[i]) : rest[i] != form[i]) return Reason::malformedDate;
  const auto field = [rest](std::size_t at) { return (rest[at] - '0') * 10 + (rest[at + 1] - '0'); };
  const int month = field(1);
  if (month < 1 || month > 12) return Reason::malformedDate;

  const long long days = daysFromCivil(negative ? -year : year, month, field(4));
  const int secondOfDay = field(7) * 3600 + field(10) * 60 + field(13);
  return Node(Type::date,
              static_cast<double>(days * 86400 + secondOfDay) - secondsFromUnixEpochToReferenceDate);
}

Result<std::string, Reason> readData(std::string_view text) {
  if (!isAscii(text)) return Reason::malformedData;
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
  }
  return bytes;
}

}  // namespace pelmarix::plist
