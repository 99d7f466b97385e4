// Where the Mac's "/" lies on the machine that the program runs on.
#pragma once

#include <string>
#include <vector>

#include "base/result.h"

namespace pelmarix::posix {

struct VolumeError {
  std::string sentence;
};

/// The folders that together stand for the Mac's "/": mounted volumes, copied trees. Since macOS Catalina a
/// Mac has two volumes, its system and its data.
///
/// Links inside them are the machine's own business, as for every program that looks at a mounted volume: a
/// relative target stays within the volume, an absolute one leads to the machine's own file of that name.
class Volume {
 public:
  /// The machine's own "/".
  Volume() = default;

  /// `folders` are separated by colons; where all of it is one existing folder, it is that one. Each is taken
  /// as it stands but for slashes at its end; "/" and the empty text are the machine's own "/". Relative ones
  /// are below the working folder of this moment, so that a later change of it moves nothing.
  explicit Volume(const std::string& folders);

  /// What the environment variable PELMARIX_VOLUME says; unset or empty it is the machine's own "/". On a Mac
  /// the variable is ignored.
  static Volume fromEnvironment();

  /// What PELMARIX_VOLUME has to be for folders that somebody chose, at least one. Fails with a sentence
  /// about the first that can't be taken: one that can't be read, is a file or an address, or that has a
  /// colon in its path and isn't alone.
  static Result<std::string, VolumeError> valueForFolders(const std::vector<std::string>& folders);

  /// True when a folder was named, be it "/": what the machine says of itself is not said of the Mac.
  bool isNamed() const { return isNamed_; }

  /// The folders, as they are on this machine.
  std::vector<std::string> folders() const;

  /// What hinders somebody who wants to look at the Mac's file, or at its folder where a slash is at the end
  /// of the path: a sentence about the folder that is missing or closed, or about the missing file. Else
  /// empty.
  std::string hindranceTo(const std::string& macPath) const;

  /// Where the Mac's absolute path leads on this machine, as bytes: below the first folder that has something
  /// there, else below the first.
  std::string resolve(const std::string& macPath) const;

 private:
  bool isNamed_ = false;
  std::vector<std::string> roots_ = {""};  // without a slash at their ends; empty for the machine's own "/"
};

}  // namespace pelmarix::posix
