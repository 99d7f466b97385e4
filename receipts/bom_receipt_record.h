// A package receipt as its property list holds it. The fields bear the list's own keys.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "base/date.h"

namespace pelmarix {

struct theBoMReceipt {
  std::string PackageIdentifier;
  Date InstallDate;  ///< always finite
};

/// The receipt in `bytes`, a property list, XML or binary, whose root is a dictionary; keys are compared
/// exactly and others are ignored. Nothing when it is anything else, lacks a key, has a value of another type
/// or an identifier of more than 1 MiB.
std::optional<theBoMReceipt> decodeBoMReceipt(std::string_view bytes);

}  // namespace pelmarix
