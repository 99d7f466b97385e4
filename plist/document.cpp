#include "plist/document.h"

#include "plist/tree.h"

namespace pelmarix::plist {

Document::Document(std::unique_ptr<const Tree> tree) : tree_(std::move(tree)) {}
Document::Document(Document&&) noexcept = default;
Document& Document::operator=(Document&&) noexcept = default;
Document::~Document() = default;

Value Document::root() const { return {*tree_, tree_->nodes[tree_->root]}; }

std::size_t Document::valueCount() const { return tree_->nodes.size(); }

}  // namespace pelmarix::plist
