#include "posix/folder_walk.h"

#include <fcntl.h>

namespace pelmarix::posix {

std::unique_ptr<FolderWalk> FolderWalk::open(const std::string& path) {
  auto top = openFile(AT_FDCWD, path.c_str(), O_RDONLY | O_DIRECTORY);
  if (!top) return nullptr;
  std::unique_ptr<FolderWalk> walk(new FolderWalk(*std::move(top)));
  walk->enter(walk->top_.get(), ".", 0);
  if (walk->levels_.empty()) return nullptr;
  return walk;
}

void FolderWalk::enter(int base, const char* path, int flags) {
  auto folder = openFile(base, path, O_RDONLY | O_DIRECTORY | flags);
  if (!folder) return;
  Stream stream(fdopendir(folder->get()));
  if (!stream) return;
  folder->release();  // the stream closes it
  if (!path_.empty()) path_ += '/';
  Level level;
  level.prefixLength = path_.size();
  while (const dirent* entry = readdir(stream.get())) {
    const std::string_view name = entry->d_name;
    if (name == "." || name == "..") continue;
    // Some file systems don't tell what an entry is.
    level.entries.push_back({std::string(name), entry->d_type == DT_DIR || entry->d_type == DT_UNKNOWN});
  }
  levels_.push_back(std::move(level));
  innermost_ = std::move(stream);
}

void FolderWalk::enterLastEntry() {
  // O_NOFOLLOW: a link put in the folder's place meanwhile leads nowhere.
  if (innermost_)
    enter(dirfd(innermost_.get()), path_.c_str() + levels_.back().prefixLength, O_NOFOLLOW);
  else
    enter(top_.get(), path_.c_str(), O_NOFOLLOW);
}

std::optional<std::string_view> FolderWalk::nextObject() {
  if (lastMayBeFolder_) enterLastEntry();
  while (!levels_.empty() && levels_.back().next == levels_.back().entries.size()) {
    levels_.pop_back();
    innermost_.reset();
  }
  lastMayBeFolder_ = false;
  if (levels_.empty()) return std::nullopt;

  Level& level = levels_.back();
  const Entry& entry = level.entries[level.next++];
  path_.resize(level.prefixLength);
  path_ += entry.name;
  lastMayBeFolder_ = entry.mayBeFolder;
  return path_;
}

}  // namespace pelmarix::posix
