// Plain objects in the place of the window's views, which keep what a controller shows in them.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "platform/controls.h"
#include "platform/table_view.h"
#include "platform/text.h"

namespace pelmarix::test {

class PlainButton final : public platform::Button {
 public:
  int state() const override { return value; }
  void setState(int state) override { value = state; }
  int value = platform::stateMixed;
};

class PlainTextView final : public platform::TextView, private platform::TextStorage {
 public:
  platform::SharedText string() const override { return shown.string; }
  platform::TextStorage* textStorage() override { return hasStorage ? this : nullptr; }
  platform::AttributedString shown{platform::shareText({}), std::nullopt, std::nullopt};
  bool hasStorage = true;

 private:
  void setAttributedString(const platform::AttributedString& text) override { shown = text; }
};

/// A cell under every identifier, but for those that are `missing`; `notCells` are views that are no cells,
/// and `textFieldless` ones lack their text field.
class PlainCells {
 public:
  platform::View* make(const std::string& identifier) {
    if (notCells.contains(identifier)) return &notCell_;
    if (missing.contains(identifier)) return nullptr;
    lastIdentifier = identifier;
    lastText.reset();
    isSizedToFit = false;
    return textFieldless.contains(identifier) ? &cellWithoutTextField_ : &cell_;
  }

  std::set<std::string> missing, notCells, textFieldless;
  std::string lastIdentifier;
  std::optional<std::string> lastText;
  bool isSizedToFit = false;

 private:
  class Field final : public platform::TextField {
   public:
    explicit Field(PlainCells& cells) : cells_(cells) {}
    void setStringValue(const std::string& text) override { cells_.lastText = text; }
    void sizeToFit() override { cells_.isSizedToFit = cells_.lastText.has_value(); }

   private:
    PlainCells& cells_;
  };

  Field field_{*this};
  platform::TableCellView cell_{&field_};
  platform::TableCellView cellWithoutTextField_{nullptr};
  platform::View notCell_;
};

class PlainOutlineView final : public platform::OutlineView {
 public:
  platform::View* makeViewWithIdentifier(const std::string& identifier) override {
    return cells.make(identifier);
  }
  void reloadItemReloadChildren(platform::Object* item, bool reloadChildren) override {
    EXPECT_EQ(item, nullptr);
    EXPECT_TRUE(reloadChildren);
    ++reloads;
  }
  platform::Object* itemAtClickedRow() const override { return clicked; }
  bool isItemExpanded(platform::Object* item) override { return expanded.contains(item); }
  void expandItem(platform::Object* item) override { expanded.insert(item); }
  void collapseItem(platform::Object* item) override { expanded.erase(item); }
  platform::Object* selectedItem() const override { return selected; }
  void selectChildOfItem(std::ptrdiff_t index, platform::Object* item) override {
    expanded.insert(item);
    selectedChild = {item, index};
  }

  PlainCells cells;
  int reloads = 0;
  platform::Object* clicked = nullptr;
  std::set<platform::Object*> expanded;
  platform::Object* selected = nullptr;
  std::pair<platform::Object*, std::ptrdiff_t> selectedChild{nullptr, -1};
};

class PlainTableView final : public platform::TableView {
 public:
  platform::View* makeViewWithIdentifier(const std::string& identifier) override {
    return cells.make(identifier);
  }
  void reloadData() override {
    ++reloads;
    whileReloading();
  }
  std::ptrdiff_t selectedRow() const override { return selected; }
  void selectRow(std::ptrdiff_t row) override { selected = row; }
  const std::vector<platform::TableColumn*>& tableColumns() const override { return columns; }

  PlainCells cells;
  platform::TableColumn first{"a"}, second{"b"}, third{"c"};
  std::vector<platform::TableColumn*> columns{&first, &second, &third};
  int reloads = 0;
  std::function<void()> whileReloading = [] {};
  std::ptrdiff_t selected = -1;
};

}  // namespace pelmarix::test
