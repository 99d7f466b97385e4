// The application's bundle: what it says of itself.
#pragma once

#include <any>
#include <map>
#include <optional>
#include <string>

namespace pelmarix::platform {

/// Text values are std::string; values of other types are held as something else.
using InfoDictionary = std::map<std::string, std::any>;

class Bundle {
 public:
  static Bundle& mainBundle();

  virtual ~Bundle() = default;
  /// Nothing when the bundle has no information dictionary.
  virtual std::optional<InfoDictionary> infoDictionary() const = 0;
};

}  // namespace pelmarix::platform
