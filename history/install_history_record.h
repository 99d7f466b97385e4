// One entry of the install history as the system's property list holds it. The fields bear the list's own
// keys.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/date.h"

namespace pelmarix {

struct theReceipts {
  std::optional<std::string> contentType;  ///< absent when the entry has none
  Date date;                               ///< always finite
  std::string displayName;
  std::string displayVersion;
};

// A binary property list can name one long text, or one entry of many keys, in a million places. What the
// records and the way to them cost together is therefore bounded: maximumGrowth bytes for each byte that they
// come from, and minimumBudget beside that.
inline constexpr std::size_t maximumGrowth = 64;
inline constexpr std::size_t minimumBudget = std::size_t{1} << 20U;

/// The entries of an install history, in the file's order. `bytes` is a property list, XML or binary, whose
/// root is an array of dictionaries; keys are compared exactly and others are ignored. Nothing when any of
/// that fails in one place: no property list, another root, an entry without its date, name or version, a
/// value of another type.
std::optional<std::vector<theReceipts>> decodeReceipts(std::string_view bytes);

}  // namespace pelmarix
