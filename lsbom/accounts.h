// The names of users and groups.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>

namespace pelmarix::lsbom {

/// Names by id, from a file of lines "name:password:id:...": "/etc/passwd" or "/etc/group". Ids may be
/// negative, as a Mac's are: -2 is 4294967294. The first name of an id counts. Lines of any other form are
/// passed over.
class Accounts {
 public:
  Accounts() = default;

  /// The names in a file's lines.
  explicit Accounts(std::string_view lines);

  /// The name, or nothing where the id has none. Valid while this object lives.
  const std::string* name(std::uint32_t id) const;

 private:
  void addLine(std::string_view line);

  std::unordered_map<std::uint32_t, std::string> names_;
};

}  // namespace pelmarix::lsbom
