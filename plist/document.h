// Property lists: from a file's bytes to values.
//
// Both forms in use are read, XML and binary; which one it is, the first bytes say. Decoding is strict: a
// file decodes as a whole or not at all. It takes time and memory in proportion to the bytes, whatever they
// are: at most 64 times their number and 1 MiB of memory. Containers may be nested 512 deep. Nothing is
// printed, nothing thrown on account of the bytes.
//
//   const auto decoded = plist::Document::decode(bytes);
//   if (!decoded) return description(decoded.error());
//   for (plist::Value entry : decoded->root().elements())
//     if (std::optional<plist::Value> name = entry.find("displayName")) use(name->string());
#pragma once

#include <cstddef>
#include <memory>
#include <string_view>

#include "base/result.h"
#include "plist/error.h"
#include "plist/value.h"

namespace pelmarix::plist {

/// A decoded property list. It can be moved, its values stay good.
class Document {
 public:
  /// The bytes must outlive the document and its values: text is not copied out of them where it can be read
  /// in place.
  static Result<Document, Error> decode(std::string_view bytes);

  Document(Document&&) noexcept;
  Document& operator=(Document&&) noexcept;
  ~Document();

  Value root() const;
  /// How many different values there are at most (see Value::identity), never more than the file has bytes.
  std::size_t valueCount() const;

 private:
  explicit Document(std::unique_ptr<Tree> tree);

  std::unique_ptr<Tree> tree_;
};

}  // namespace pelmarix::plist
