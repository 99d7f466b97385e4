// A file system in memory, for tests of what is made of files whatever their order and state. The real one is
// tested beside its implementation.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/file_manager.h"

namespace pelmarix::test {

class MemoryFileManager final : public platform::FileManager {
 public:
  /// Files by absolute path. What a folder's enumerator yields is listed apart, since order matters to its
  /// caller.
  std::map<std::string, std::string> files;
  /// A folder that isn't here can't be opened.
  std::map<std::string, std::vector<std::string>> folders;
  /// What writeFile answers; nothing means success.
  std::optional<std::error_code> writeFailure;
  std::function<void()> whileWriting = [] {};
  /// Every path that was asked for, in order.
  std::vector<std::string> pathsRead;

  std::unique_ptr<platform::DirectoryEnumerator> enumeratorAtPath(const std::string& path) override {
    const auto found = folders.find(path);
    if (found == folders.end()) return nullptr;
    return std::make_unique<ListEnumerator>(found->second);
  }

  Result<std::string, std::error_code> readFile(const std::string& path) override {
    pathsRead.push_back(path);
    const auto found = files.find(path);
    if (found == files.end()) return std::make_error_code(std::errc::no_such_file_or_directory);
    return found->second;
  }

  Result<void, std::error_code> writeFile(const std::string& path,
                                          const std::vector<std::string_view>& parts) override {
    whileWriting();
    if (writeFailure) return *writeFailure;
    std::string& contents = files[path];
    contents.clear();
    for (const std::string_view part : parts) contents += part;
    return {};
  }

 private:
  class ListEnumerator final : public platform::DirectoryEnumerator {
   public:
    explicit ListEnumerator(std::vector<std::string> names) : names_(std::move(names)) {}
    std::optional<std::string_view> nextObject() override {
      if (next_ == names_.size()) return std::nullopt;
      return names_[next_++];
    }

   private:
    std::vector<std::string> names_;
    std::size_t next_ = 0;
  };
};

}  // namespace pelmarix::test
