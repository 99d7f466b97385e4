// Where the Mac's "/" lies on the machine that the program runs on.
#pragma once

#include <string>
#include <string_view>

namespace pelmarix::posix {

/// A folder that stands for the Mac's "/": a mounted volume, a copied tree.
///
/// Links inside it are the machine's own business, as for every program that looks at a mounted volume: a
/// relative target stays within the volume, an absolute one leads to the machine's own file of that name.
class Volume {
 public:
  /// The machine's own "/".
  Volume() = default;

  /// `root` is taken as it stands but for slashes at its end; "/" and the empty text are the machine's own
  /// "/". A relative one is below the working folder of this moment, so that a later change of it moves
  /// nothing.
  explicit Volume(const std::string& root);

  /// What the environment variable PELMARIX_VOLUME says; unset or empty it is the machine's own "/". On a Mac
  /// the variable is ignored.
  static Volume fromEnvironment();

  /// True when a folder was named, be it "/": what the machine says of itself is not said of the Mac.
  bool isNamed() const { return isNamed_; }

  /// Where the Mac's absolute path leads on this machine, as bytes.
  std::string resolve(const std::string& macPath) const { return root_ + macPath; }

 private:
  bool isNamed_ = false;
  std::string root_;  // without a slash at its end; empty for the machine's own "/"
};

}  // namespace pelmarix::posix
