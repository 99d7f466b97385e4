#include "lsbom/field_formats.h"

#include <chrono>
#include <string_view>

namespace pelmarix::lsbom {
namespace {

char digit(std::uint32_t value) { return static_cast<char>('0' + value % 10); }

// The letter of the execute bit where a bit of its own (set-id, sticky) shares its place.
char executeLetter(bool execute, bool special, char both) {
  if (!special) return execute ? 'x' : '-';
  return execute ? both : static_cast<char>(both - 'a' + 'A');
}

}  // namespace

std::string symbolicMode(std::uint16_t mode) {
  constexpr std::string_view types = "?pc?d?b?-?l?s???";
  const auto letter = [mode](int bit, char set) { return (mode & bit) != 0 ? set : '-'; };
  const auto execute = [mode](int bit, int specialBit, char both) {
    return executeLetter((mode & bit) != 0, (mode & specialBit) != 0, both);
  };
  return {types[mode >> 12U], letter(0400, 'r'),        letter(0200, 'w'),         execute(0100, 04000, 's'),
          letter(0040, 'r'),  letter(0020, 'w'),        execute(0010, 02000, 's'), letter(0004, 'r'),
          letter(0002, 'w'),  execute(0001, 01000, 't')};
}

std::string groupedNumber(std::uint32_t number) {
  std::string digits = std::to_string(number);
  for (std::size_t i = digits.size(); i > 3; i -= 3) digits.insert(i - 3, 1, ',');
  return digits;
}

std::array<char, 24> classicTime(std::uint32_t seconds) {
  constexpr std::string_view weekdays = "SunMonTueWedThuFriSat";
  constexpr std::string_view months = "JanFebMarAprMayJunJulAugSepOctNovDec";
  constexpr std::uint32_t secondsPerDay = 86400;
  const std::chrono::sys_days day{std::chrono::days{seconds / secondsPerDay}};
  const std::chrono::year_month_day date{day};
  const auto year = static_cast<unsigned>(int{date.year()});
  const std::uint32_t second = seconds % secondsPerDay;

  std::array<char, 24> form{};
  form.fill(' ');
  const auto putTwoDigits = [&form](std::size_t place, std::uint32_t value) {
    form[place] = digit(value / 10);
    form[place + 1] = digit(value);
  };
  weekdays.copy(form.data(), 3, std::size_t{3} * std::chrono::weekday{day}.c_encoding());
  months.copy(form.data() + 4, 3, std::size_t{3} * (unsigned{date.month()} - 1));
  putTwoDigits(8, unsigned{date.day()});
  if (form[8] == '0') form[8] = ' ';
  putTwoDigits(11, second / 3600);
  putTwoDigits(14, second / 60 % 60);
  putTwoDigits(17, second % 60);
  form[13] = form[16] = ':';
  putTwoDigits(20, year / 100);
  putTwoDigits(22, year);
  return form;
}

}  // namespace pelmarix::lsbom
