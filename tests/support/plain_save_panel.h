// A save panel that ends when the test says so.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/save_panel.h"

namespace pelmarix::test {

class PlainSavePanel final : public platform::SavePanel {
 public:
  void setCanCreateDirectories(bool canCreate) override { canCreateDirectories = canCreate; }
  void setAllowedFileTypes(const std::vector<std::string>& types) override { allowedFileTypes = types; }
  void setTitle(const std::string& text) override { title = text; }
  void setContents(const std::vector<std::string>& names) override { contents = names; }
  std::size_t chosenContent() const override { return chosen; }
  void beginWithCompletionHandler(std::function<void(int)> handler) override { completionHandler = handler; }
  std::optional<std::string> path() const override { return chosenPath; }

  bool canCreateDirectories = false;
  std::vector<std::string> allowedFileTypes;
  std::string title;
  std::vector<std::string> contents;
  std::size_t chosen = 0;
  std::function<void(int)> completionHandler;
  std::optional<std::string> chosenPath;
};

}  // namespace pelmarix::test
