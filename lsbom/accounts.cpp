#include "lsbom/accounts.h"

#include <charconv>
#include <cstdint>
#include <system_error>

namespace pelmarix::lsbom {
namespace {

// Takes what stands ahead of the first separator, and the separator, away from the front.
std::string_view takeField(std::string_view& rest, char separator) {
  const std::size_t end = rest.find(separator);
  const std::string_view field = rest.substr(0, end);
  rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
  return field;
}

}  // namespace

Accounts::Accounts(std::string_view lines) {
  while (!lines.empty()) addLine(takeField(lines, '\n'));
}

void Accounts::addLine(std::string_view line) {
  const std::string_view name = takeField(line, ':');
  takeField(line, ':');
  const std::string_view number = takeField(line, ':');
  std::int64_t id = 0;
  const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), id);
  if (name.empty() || name.front() == '#' || error != std::errc() || end != number.data() + number.size())
    return;
  if (id < INT32_MIN || id > UINT32_MAX) return;
  names_.emplace(static_cast<std::uint32_t>(id), name);
}

const std::string* Accounts::name(std::uint32_t id) const {
  const auto found = names_.find(id);
  return found == names_.end() ? nullptr : &found->second;
}

}  // namespace pelmarix::lsbom
