#include "plist/document.h"

#include "plist/binary_decoder.h"
#include "plist/tree.h"
#include "plist/xml_decoder.h"

namespace pelmarix::plist {

Document::Document() : tree_(std::make_unique<Tree>()) {}
Document::Document(Document&&) noexcept = default;
Document& Document::operator=(Document&&) noexcept = default;
Document::~Document() = default;

Result<Document> Document::decode(std::string_view bytes) {
  Document document;
  if (const auto error = document.assign(bytes)) return *error;
  return document;
}

std::optional<Error> Document::assign(std::string_view bytes) {
  tree_->clear();
  // What claims to be binary is never tried as XML: the error would then speak of a text that isn't there.
  auto error = bytes.starts_with(binaryMagic) ? decodeBinary(bytes, *tree_) : decodeXml(bytes, *tree_);
  if (error) tree_->clear();
  return error;
}

Value Document::root() const { return {*tree_, tree_->nodes[tree_->root]}; }

std::size_t Document::valueCount() const { return tree_->nodes.size(); }

}  // namespace pelmarix::plist
