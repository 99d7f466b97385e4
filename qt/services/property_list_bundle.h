// What the program's Info.plist says.
#pragma once

#include <optional>
#include <string_view>

#include "platform/bundle.h"

namespace pelmarix::qt {

/// Texts are held as std::string; of a value of another type its plist::Type is held.
class PropertyListBundle final : public platform::Bundle {
 public:
  /// The bundle's own Info.plist on a Mac, elsewhere the one that is built into the program.
  PropertyListBundle();

  /// Bytes that are no property list, or one whose root is no dictionary, make a bundle without an
  /// information dictionary.
  explicit PropertyListBundle(std::string_view bytes);

  std::optional<platform::InfoDictionary> infoDictionary() const override { return infoDictionary_; }

 private:
  std::optional<platform::InfoDictionary> infoDictionary_;
};

}  // namespace pelmarix::qt
