#include "plist/document.h"

#include <utility>

#include "plist/binary_decoder.h"
#include "plist/tree.h"
#include "plist/xml_decoder.h"

namespace pelmarix::plist {

Document::Document(std::unique_ptr<Tree> tree) : tree_(std::move(tree)) {}
Document::Document(Document&&) noexcept = default;
Document& Document::operator=(Document&&) noexcept = default;
Document::~Document() = default;

Result<Document, Error> Document::decode(std::string_view bytes) {
  auto tree = std::make_unique<Tree>();
  // What claims to be binary is never tried as XML: the error would then speak of a text that isn't there.
  auto decoded = bytes.starts_with(binaryMagic) ? decodeBinary(bytes, *tree) : decodeXml(bytes, *tree);
  if (!decoded) return decoded.error();
  return Document(std::move(tree));
}

Value Document::root() const { return {*tree_, tree_->nodes[tree_->root]}; }

std::size_t Document::valueCount() const { return tree_->nodes.size(); }

}  // namespace pelmarix::plist
