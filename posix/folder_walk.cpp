#include "posix/folder_walk.h"

#include <dirent.h>
#include <fcntl.h>

#include <cstring>
#include <string_view>
#include <utility>

#include "posix/file_contents.h"

namespace pelmarix::posix {

std::unique_ptr<FolderWalk> FolderWalk::open(const std::string& path) {
  FileDescriptor top = openFile(AT_FDCWD, path.c_str(), O_RDONLY | O_DIRECTORY);
  if (!top) return nullptr;
  FileDescriptor innermost = openFile(top.get(), ".", O_RDONLY | O_DIRECTORY);
  std::unique_ptr<FolderWalk> walk(new FolderWalk(std::move(top)));
  return walk->enter(std::move(innermost)) ? std::move(walk) : nullptr;
}

FolderWalk::Kind FolderWalk::kindOf(const dirent& entry) {
  switch (entry.d_type) {
    case DT_REG:
      return regularFile;
    case DT_DIR:
      return folder;
    case DT_UNKNOWN:  // of file systems that don't tell
      return unknown;
    default:
      return other;
  }
}

bool FolderWalk::enter(FileDescriptor opened) {
  Stream stream(opened ? fdopendir(opened.get()) : nullptr);
  if (!stream) return false;
  opened.release();
  if (!path_.empty()) path_ += '/';
  Level level;
  level.prefixLength = path_.size();
  while (const dirent* entry = readdir(stream.get())) {
    const std::string_view name = entry->d_name;
    if (name == "." || name == "..") continue;
    level.entries.push_back(kindOf(*entry));
    level.entries.append(name.data(), name.size() + 1);
  }
  levels_.push_back(std::move(level));
  innermost_ = std::move(stream);
  return true;
}

FileDescriptor FolderWalk::openEntry(int flags) const {
  if (!innermost_) return openFile(top_.get(), path_.c_str(), flags);
  return openFile(dirfd(innermost_.get()), path_.c_str() + levels_.back().prefixLength, flags);
}

std::optional<std::string_view> FolderWalk::nextObject() {
  if (kind_ == folder || kind_ == unknown) {
    // O_NOFOLLOW: a link put in the folder's place meanwhile leads nowhere.
    enter(openEntry(O_RDONLY | O_DIRECTORY | O_NOFOLLOW));
    kind_ = other;
  }
  while (!levels_.empty() && levels_.back().next == levels_.back().entries.size()) {
    levels_.pop_back();
    innermost_.reset();
  }
  if (levels_.empty()) return std::nullopt;

  Level& level = levels_.back();
  kind_ = static_cast<Kind>(level.entries[level.next]);
  const char* name = level.entries.c_str() + level.next + 1;
  const std::size_t length = std::strlen(name);
  level.next += 1 + length + 1;
  path_.resize(level.prefixLength);
  path_.append(name, length);
  return path_;
}

std::optional<std::string_view> FolderWalk::readFile() {
  const FileDescriptor file = openEntry(openForReading);
  if (!file) return std::nullopt;
  std::size_t size = 0;
  if (kind_ == regularFile) {
    const ssize_t count = readSome(file.get(), buffer_.data(), buffer_.size());
    if (count < 0) return std::nullopt;
    size = static_cast<std::size_t>(count);
    // Less than was asked for is all there is. Nothing at all, or too much, may come from something else that
    // has taken the file's place.
    if (size > 0 && size < buffer_.size()) return std::string_view(buffer_.data(), size);
  }
  contents_.assign(buffer_.data(), size);
  if (!readRemainder(file.get(), contents_, size)) return std::nullopt;
  return contents_;
}

}  // namespace pelmarix::posix
