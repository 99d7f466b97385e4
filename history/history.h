// The install history as the program keeps it: groups of classified entries, one group for each system
// install.
//
// Groups and entries are shared and compared by identity, since an outline shows the objects themselves.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/date.h"
#include "platform/object.h"

namespace pelmarix {

/// The classes of entries that are kept. The loader alone assigns them.
namespace history_type {
inline constexpr std::int64_t systemInstall = 0;  ///< always the first child of the group that it starts
inline constexpr std::int64_t securityUpdate = 1;
inline constexpr std::int64_t securityData = 2;
inline constexpr std::int64_t criticalUpdate = 3;
inline constexpr std::int64_t configurationData = 4;

/// In words: "security data". Empty for any other number.
std::string_view name(std::int64_t type);
}  // namespace history_type

/// One entry. Nothing of it changes after its creation.
class HistoryItem final : public platform::Object {
 public:
  HistoryItem(std::string nameOfEntry, std::string versionOfEntry, Date dateOfInstall,
              std::int64_t typeOfEntry)
      : name(std::move(nameOfEntry)),
        version(std::move(versionOfEntry)),
        installDate(dateOfInstall),
        type(typeOfEntry) {}

  const std::string name;
  const std::string version;
  const Date installDate;   ///< always finite
  const std::int64_t type;  ///< one of history_type
};

/// What it is: "security data, 2103".
std::string kindAndVersion(const HistoryItem& item);

/// A named group of entries, in the order of the system's own list.
class History final : public platform::Object {
 public:
  explicit History(std::string nameOfGroup) : name(std::move(nameOfGroup)) {}

  /// One line of the report for each child, in their order: "NAME: VERSION DATE\n". With `skipConfigData` an
  /// entry of configuration data keeps its place with an empty string. The group adds no line of its own.
  std::vector<std::string> reportLines(bool skipConfigData) const;

  const std::string name;
  std::vector<std::shared_ptr<HistoryItem>> children;
};

/// All entries of the groups as comma-separated values (base/csv.h), in their order, below a line of titles:
/// group, kind, name, version and date of each.
std::string csvText(const std::vector<std::shared_ptr<History>>& groups);

}  // namespace pelmarix
