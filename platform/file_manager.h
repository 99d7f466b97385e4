// The file system, as far as the program reads and writes it.
//
// Paths are the Mac's own absolute paths ("/Library/..."), as bytes: a name need not be UTF-8. Where they
// lead on the machine that the program runs on is the implementation's business.
#pragma once

#include <memory>
#include <new>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <type_traits>
#include <vector>

#include "base/result.h"

namespace pelmarix::platform {

/// Walks everything below a folder, files and folders, hidden entries included, in the file system's own
/// order, a folder before what is in it. Symbolic links are yielded, never followed.
class DirectoryEnumerator {
 public:
  virtual ~DirectoryEnumerator() = default;
  /// The next entry's path relative to the folder (not ending in "/"); nothing at the end. A sub-folder that
  /// can't be opened is yielded and passed over, and so is the rest of a folder that can't be read to its
  /// end. The path stays good until the next call.
  virtual std::optional<std::string_view> nextObject() = 0;
};

class FileManager {
 public:
  static FileManager& defaultManager();

  virtual ~FileManager() = default;

  /// Null when the folder can't be opened.
  virtual std::unique_ptr<DirectoryEnumerator> enumeratorAtPath(const std::string& path) = 0;

  /// The whole file's bytes. Fails when the file is missing, can't be read, is too large, or isn't a regular
  /// file: a folder, a FIFO or a device is refused without being read or waited for.
  virtual Result<std::string, std::error_code> readFile(const std::string& path) = 0;

  /// What `decode` makes of the whole file's bytes. Fails where readFile does, and where there is not enough
  /// memory for either.
  template <typename Decode>
  Result<std::invoke_result_t<Decode, std::string_view>, std::error_code> decodeFile(const std::string& path,
                                                                                     Decode decode) try {
    const auto bytes = readFile(path);
    if (!bytes) return bytes.error();
    return decode(std::string_view(*bytes));
  } catch (const std::bad_alloc&) {
    return std::make_error_code(std::errc::not_enough_memory);
  }

  /// Writes the parts one after the other into the file in place, replacing what it held. `path` is one that
  /// the user chose and is taken as it stands. The error's message is the system's own description. A file
  /// that can't be written keeps what it held; a write that stops half way is a failure, too, and leaves what
  /// was written.
  virtual Result<void, std::error_code> writeFile(const std::string& path,
                                                  const std::vector<std::string_view>& parts) = 0;
};

}  // namespace pelmarix::platform
