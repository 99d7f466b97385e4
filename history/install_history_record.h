// An entry of the install history as its property list holds it. The fields bear the list's own keys.
#pragma once

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

/// The entries of the install history in `bytes`, in their order there. It is a property list, XML or binary,
/// whose root is an array of dictionaries; keys are compared exactly and others are ignored. Nothing when any
/// of it is anything else: another root, an entry without its date, name or version, a value of another type,
/// or records that the program would need more than 64 bytes of memory for each byte of the list for and
/// 16 MiB beside that, or more than 384 MiB in all (a binary list can name one long text, or one entry of
/// many keys, in a million places).
std::optional<std::vector<theReceipts>> decodeInstallHistory(std::string_view bytes);

}  // namespace pelmarix
