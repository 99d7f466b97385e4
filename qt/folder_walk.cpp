#include "qt/folder_walk.h"

#include <dirent.h>
#include <fcntl.h>

#include <cstring>
#include <string_view>
#include <utility>

namespace pelmarix::qt {
namespace {

// File systems that don't tell an entry's kind leave it to be tried.
char kindOf(const dirent& entry) { return entry.d_type == DT_DIR || entry.d_type == DT_UNKNOWN ? 'd' : '-'; }

}  // namespace

std::unique_ptr<FolderWalk> FolderWalk::open(const std::string& path) {
  FileDescriptor top = openFile(AT_FDCWD, path, O_RDONLY | O_DIRECTORY);
  if (!top) return nullptr;
  FileDescriptor innermost = openFile(top.get(), ".", O_RDONLY | O_DIRECTORY);
  std::unique_ptr<FolderWalk> walk(new FolderWalk(std::move(top)));
  return walk->enter(std::move(innermost)) ? std::move(walk) : nullptr;
}

bool FolderWalk::enter(FileDescriptor folder) {
  Stream stream(folder ? fdopendir(folder.get()) : nullptr);
  if (!stream) return false;
  folder.release();
  if (!path_.empty()) path_ += '/';
  Level level;
  level.prefixLength = path_.size();
  while (const dirent* entry = readdir(stream.get())) {
    const std::string_view name = entry->d_name;
    if (name == "." || name == "..") continue;
    level.entries += kindOf(*entry);
    level.entries.append(name.data(), name.size() + 1);
  }
  levels_.push_back(std::move(level));
  innermost_ = std::move(stream);
  return true;
}

std::optional<std::string> FolderWalk::nextObject() {
  if (std::exchange(mayBeFolder_, false)) {
    // O_NOFOLLOW: a link put in the folder's place meanwhile leads nowhere.
    constexpr int flags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW;
    enter(innermost_ ? openFile(dirfd(innermost_.get()), path_.substr(levels_.back().prefixLength), flags)
                     : openFile(top_.get(), path_, flags));
  }
  while (!levels_.empty() && levels_.back().next == levels_.back().entries.size()) {
    levels_.pop_back();
    innermost_.reset();
  }
  if (levels_.empty()) return std::nullopt;

  Level& level = levels_.back();
  mayBeFolder_ = level.entries[level.next] == 'd';
  const char* name = level.entries.c_str() + level.next + 1;
  const std::size_t length = std::strlen(name);
  level.next += 1 + length + 1;
  path_.resize(level.prefixLength);
  path_.append(name, length);
  return path_;
}

}  // namespace pelmarix::qt
