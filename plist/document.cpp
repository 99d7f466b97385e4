#include "plist/document.h"

#include <utility>

#include "plist/binary_decoder.h"
#include "plist/tree.h"
#include "plist/xml_decoder.h"

namespace pelmarix::plist {

Document::Document(Tree tree) : tree_(std::make_shared<Tree>(std::move(tree))) {}

Result<Document, Error> Document::decode(std::string_view bytes) {
  if (bytes.size() > maximumSize) return Error{Reason::tooLarge};
  // A damaged binary file is not tried as XML: the error would then speak of a text that isn't there.
  Result<Tree, Error> tree = bytes.starts_with(binaryMagic) ? decodeBinary(bytes) : decodeXml(bytes);
  if (!tree) return tree.error();
  return Document(*std::move(tree));
}

Value Document::root() const { return {*tree_, tree_->nodes[tree_->root]}; }

}  // namespace pelmarix::plist
