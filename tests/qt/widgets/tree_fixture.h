// An outline over a small tree that a test builds, in a real widget.
#pragma once

#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QApplication>
#include <memory>
#include <string>
#include <vector>

#include "qt/widgets/outline_adapter.h"
#include "qt/widgets/outline_widget.h"

namespace pelmarix::test {

struct Item final : platform::Object {
  explicit Item(std::string nameOfItem) : name(std::move(nameOfItem)) {}
  std::string name;
  std::vector<std::shared_ptr<Item>> children;
};

/// Data source and delegate of the outline. For an item without children it answers as for the root, as the
/// main window's controller does.
class Tree final : public platform::OutlineViewDataSource, public platform::OutlineViewDelegate {
 public:
  std::ptrdiff_t outlineViewNumberOfChildrenOfItem(platform::OutlineView& /*outlineView*/,
                                                   platform::Object* item) override {
    return std::ssize(childrenOf(item));
  }
  platform::Object* outlineViewChildOfItem(platform::OutlineView& /*outlineView*/, std::ptrdiff_t index,
                                           platform::Object* item) override {
    if (item != nullptr) ++entryQuestions;
    return childrenOf(item).at(static_cast<std::size_t>(index)).get();
  }
  bool outlineViewIsItemExpandable(platform::OutlineView& /*outlineView*/, platform::Object* item) override {
    return !dynamic_cast<Item&>(*item).children.empty();
  }
  platform::View* outlineViewViewForTableColumnItem(platform::OutlineView& outlineView,
                                                    const platform::TableColumn* column,
                                                    platform::Object* item) override {
    ++cellQuestions;
    platform::View* view = outlineView.makeViewWithIdentifier(column->identifier() + "Cell");
    const std::string& name = dynamic_cast<Item&>(*item).name;
    // A cell without a text is left as it was made.
    if (auto* cell = dynamic_cast<platform::TableCellView*>(view);
        cell != nullptr && column->identifier() == "Name" && !name.empty())
      cell->textField()->setStringValue(name);
    return view;
  }
  std::string outlineViewToolTipForItem(platform::OutlineView& /*outlineView*/,
                                        platform::Object* item) override {
    return "What " + dynamic_cast<Item&>(*item).name + " is";
  }
  std::string outlineViewAccessibilityDescriptionForItem(platform::OutlineView& outlineView,
                                                         platform::Object* item) override {
    return outlineViewToolTipForItem(outlineView, item) + ", with the rest of its row";
  }

  std::shared_ptr<Item> addGroup(const std::string& name, const std::vector<std::string>& entries) {
    auto group = std::make_shared<Item>(name);
    for (const std::string& entry : entries) group->children.push_back(std::make_shared<Item>(entry));
    return groups.emplace_back(std::move(group));
  }

  std::vector<std::shared_ptr<Item>> groups;
  int entryQuestions = 0;
  int cellQuestions = 0;

 private:
  const std::vector<std::shared_ptr<Item>>& childrenOf(platform::Object* item) const {
    const auto* group = dynamic_cast<const Item*>(item);
    return group == nullptr || group->children.empty() ? groups : group->children;
  }
};

inline std::vector<qt::ColumnDescription> treeColumns() {
  return {{"Name", QStringLiteral("Name"), {"NameCell"}, {}},
          {"Date", QStringLiteral("Date"), {"DateCell"}, QStringLiteral("2019-03-25")},
          {"Other", QStringLiteral("Other"), {}, QStringLiteral("something else")}};
}

class OutlineOfATree : public testing::Test {
 protected:
  OutlineOfATree() {
    mojave = tree.addGroup("Mojave", {"macOS Mojave", "Security Update", "Rosetta"});
    empty = tree.addGroup("Nothing followed", {});
    catalina = tree.addGroup("Catalina", {"macOS Catalina", "\tWord List"});
    reload();
    widget.resize(600, 400);
    widget.show();
    QApplication::processEvents();
  }

  void reload() { outline.reloadItemReloadChildren(nullptr, true); }
  QModelIndex group(int row) const { return widget.model()->index(row, 0); }
  QModelIndex entry(int groupRow, int row) const { return widget.model()->index(row, 0, group(groupRow)); }
  static std::string text(const QModelIndex& index) { return index.data().toString().toStdString(); }

  Tree tree;
  std::shared_ptr<Item> mojave, empty, catalina;
  qt::OutlineWidget widget;
  qt::OutlineAdapter outline{widget, treeColumns(), tree, tree};
  QAbstractItemModelTester tester{widget.model(), QAbstractItemModelTester::FailureReportingMode::Fatal};
};

}  // namespace pelmarix::test
