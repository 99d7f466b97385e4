// The walk through everything below a folder.
#pragma once

#include <dirent.h>

#include <array>
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

/// Holds two descriptors, however deep the folders are nested: each folder's names are read at once, when the
/// walk enters it. What appears in a folder later isn't seen, what vanishes is yielded all the same.
class FolderWalk final : public platform::DirectoryEnumerator {
 public:
  /// Null when the folder can't be opened. A link that leads to a folder is followed here, and only here.
  static std::unique_ptr<FolderWalk> open(const std::string& path);

  std::optional<std::string_view> nextObject() override;
  std::optional<std::string_view> readFile() override;

 private:
  /// What a folder says of its entries, which may have changed since.
  enum Kind : char { regularFile = 'f', folder = 'd', other = 'o', unknown = 'u' };

  /// A folder that the walk is in.
  struct Level {
    /// One byte of Kind and the zero-terminated name for each entry, in the file system's order.
    std::string entries;
    std::size_t next = 0;
    /// How much of path_ is the folder's own, with the slash at its end.
    std::size_t prefixLength = 0;
  };

  struct StreamCloser {
    void operator()(DIR* stream) const { closedir(stream); }
  };
  using Stream = std::unique_ptr<DIR, StreamCloser>;

  explicit FolderWalk(FileDescriptor top) : top_(std::move(top)) {}
  static Kind kindOf(const dirent& entry);
  bool enter(FileDescriptor opened);
  /// Opens the entry yielded last.
  FileDescriptor openEntry(int flags) const;

  FileDescriptor top_;
  std::vector<Level> levels_;
  /// The folder of the last level; none after the walk has come back to it from a deeper one. The way from
  /// there spares the long one from the top to each folder of a deep nest.
  Stream innermost_;
  /// The entry yielded last, relative to the top.
  std::string path_;
  Kind kind_ = other;
  /// Takes in one call what a property list of the usual size holds.
  std::array<char, 16384> buffer_;
  /// Takes what is larger.
  std::string contents_;
};

}  // namespace pelmarix::posix
