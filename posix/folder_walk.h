// The walk through everything below a folder.
#pragma once

#include <dirent.h>

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/file_manager.h"
#include "posix/file_descriptor.h"

namespace pelmarix::posix {

/// Holds two descriptors, however deep the folders are nested: a folder's names are all read when the walk
/// enters it. What appears in a folder later isn't seen, what vanishes is yielded all the same.
class FolderWalk final : public platform::DirectoryEnumerator {
 public:
  /// Null when the folder can't be opened. A link that leads to a folder is followed here, and only here.
  static std::unique_ptr<FolderWalk> open(const std::string& path);

  std::optional<std::string_view> nextObject() override;

 private:
  struct Entry {
    std::string name;
    bool mayBeFolder;
  };

  // A folder that the walk is in.
  struct Level {
    std::vector<Entry> entries;  // in the file system's order
    std::size_t next = 0;
    std::size_t prefixLength = 0;  // of the folder's own part of path_, with the slash at its end
  };

  struct StreamCloser {
    void operator()(DIR* stream) const { closedir(stream); }
  };
  using Stream = std::unique_ptr<DIR, StreamCloser>;

  explicit FolderWalk(FileDescriptor top) : top_(std::move(top)) {}
  // Goes into the folder at `path`, relative to `base`, that is called path_; stays where it is if that
  // can't be opened.
  void enter(int base, const char* path, int flags);
  void enterLastEntry();

  FileDescriptor top_;
  std::vector<Level> levels_;
  // Open from when the walk enters the last level's folder until it leaves the next one. Meanwhile folders
  // in it are opened from here, and not by their whole path from the top.
  Stream innermost_;
  std::string path_;  // of the entry yielded last, relative to the top
  bool lastMayBeFolder_ = false;
};

}  // namespace pelmarix::posix
