// Property lists: from a file's bytes to values.
//
// Both forms in use are read, XML and binary; the first bytes say which one it is. Decoding is strict: a file
// decodes as a whole or not at all. It takes time and memory in proportion to the bytes, whatever they are:
// at most 64 times their number and 1 MiB of memory, and less than 768 MiB in any case. A file of more than
// 256 MiB, or of more than twelve million values, is refused. Containers may be nested 512 deep. Nothing is
// printed, and nothing thrown but what tells that this memory is not to be had.
//
//   const auto document = plist::Document::decode(bytes);
//   if (!document) return description(document.error());
//   for (plist::Value entry : document->root().elements())
//     if (std::optional<plist::Value> name = entry.find("displayName")) use(name->string());
#pragma once

#include <memory>
#include <string_view>

#include "base/result.h"
#include "plist/error.h"
#include "plist/value.h"

namespace pelmarix::plist {

/// A decoded property list. Its values stay good when it is moved.
class Document {
 public:
  /// The bytes must outlive the document and its values: strings are not copied out of them where they can be
  /// read in place.
  static Result<Document, Error> decode(std::string_view bytes);

  Value root() const;

 private:
  explicit Document(Tree tree);

  std::shared_ptr<const Tree> tree_;
};

}  // namespace pelmarix::plist
