#include "lsbom/text.h"

#include <chrono>

namespace pelmarix::lsbom {
namespace {

constexpr std::uint32_t secondsPerDay = 86400;

char typeLetter(std::uint16_t mode) {
  switch (mode & 0170000) {
    case 0010000:
      return 'p';
    case 0020000:
      return 'c';
    case 0040000:
      return 'd';
    case 0060000:
      return 'b';
    case 0100000:
      return '-';
    case 0120000:
      return 'l';
    case 0140000:
      return 's';
    default:
      return '?';
  }
}

// The letter of the execute bit where a bit of its own (set-id, sticky) shares its place.
char executeLetter(bool execute, bool special, char both) {
  if (!special) return execute ? 'x' : '-';
  return execute ? both : static_cast<char>(both - 'a' + 'A');
}

char digit(std::uint32_t value) { return static_cast<char>('0' + value % 10); }

}  // namespace

std::array<char, 10> symbolicMode(std::uint16_t mode) {
  const auto letter = [mode](int bit, char set) { return (mode & bit) != 0 ? set : '-'; };
  const auto execute = [mode](int bit, int specialBit, char both) {
    return executeLetter((mode & bit) != 0, (mode & specialBit) != 0, both);
  };
  return {typeLetter(mode),  letter(0400, 'r'),        letter(0200, 'w'),         execute(0100, 04000, 's'),
          letter(0040, 'r'), letter(0020, 'w'),        execute(0010, 02000, 's'), letter(0004, 'r'),
          letter(0002, 'w'), execute(0001, 01000, 't')};
}

std::string groupedNumber(std::uint32_t number) {
  std::string text = std::to_string(number);
  for (std::size_t i = text.size(); i > 3; i -= 3) text.insert(i - 3, 1, ',');
  return text;
}

std::string quoted(std::string_view text) {
  std::string result = "\"";
  for (const char character : text) {
    const auto byte = static_cast<unsigned char>(character);
    if (byte < 0x20 || byte == 0x7F) {
      result += {'\\', digit(byte / 64U), digit(byte / 8U % 8U), digit(byte % 8U)};
    } else {
      if (character == '"' || character == '\\') result += '\\';
      result += character;
    }
  }
  return result += '"';
}

std::string_view TimeText::operator()(std::uint32_t seconds) {
  using std::chrono::sys_days;
  const std::uint32_t day = seconds / secondsPerDay;
  if (day != day_) {
    const sys_days date{std::chrono::days{day}};
    const std::chrono::year_month_day parts{date};
    constexpr std::string_view weekdays = "SunMonTueWedThuFriSat";
    constexpr std::string_view months = "JanFebMarAprMayJunJulAugSepOctNovDec";
    const unsigned month = unsigned{parts.month()};
    const unsigned dayOfMonth = unsigned{parts.day()};
    const auto year = static_cast<unsigned>(int{parts.year()});
    weekdays.copy(text_.data(), 3, std::size_t{std::chrono::weekday{date}.c_encoding()} * 3);
    months.copy(text_.data() + 4, 3, std::size_t{month - 1} * 3);
    text_[3] = text_[7] = text_[10] = text_[19] = ' ';
    text_[13] = text_[16] = ':';
    text_[8] = dayOfMonth < 10 ? ' ' : digit(dayOfMonth / 10);
    text_[9] = digit(dayOfMonth);
    text_[20] = digit(year / 1000);
    text_[21] = digit(year / 100);
    text_[22] = digit(year / 10);
    text_[23] = digit(year);
    day_ = day;
  }
  const std::uint32_t second = seconds % secondsPerDay;
  text_[11] = digit(second / 36000);
  text_[12] = digit(second / 3600);
  text_[14] = digit(second / 600 % 6);
  text_[15] = digit(second / 60);
  text_[17] = digit(second / 10 % 6);
  text_[18] = digit(second);
  return {text_.data(), text_.size()};
}

}  // namespace pelmarix::lsbom
