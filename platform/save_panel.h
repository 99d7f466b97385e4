// The panel in which the user chooses where to save.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/text.h"

namespace pelmarix::platform {

/// The response of a panel that ended with its OK button; any other value means that nothing was chosen.
inline constexpr int modalResponseOK = 1;
inline constexpr int modalResponseCancel = 0;

class SavePanel {
 public:
  static std::shared_ptr<SavePanel> make();

  virtual ~SavePanel() = default;
  virtual void setCanCreateDirectories(bool canCreate) = 0;
  /// File-name extensions without the dot; a name that has none of them gets the first.
  virtual void setAllowedFileTypes(const std::vector<std::string>& types) = 0;
  virtual void setTitle(const std::string& title) = 0;
  /// Names of what can be saved, of which the user chooses one; the first is chosen at first. Set after the
  /// types, which all of them have.
  virtual void setContents(const std::vector<std::string>& names) = 0;
  /// The place of the chosen content among them.
  virtual std::size_t chosenContent() const = 0;
  /// Shows the panel and returns. `handler` is called once on the main thread with the response when
  /// the panel has ended, and released then; the panel stays alive until then. It is not called when the
  /// program ends first.
  virtual void beginWithCompletionHandler(std::function<void(int response)> handler) = 0;
  /// The absolute path of the chosen file; nothing when there is none. Toolkits know names as text: one that
  /// isn't UTF-8 comes out changed, and writing to it fails.
  virtual std::optional<std::string> path() const = 0;
};

/// Shows a panel that may make folders and writes `parts`, one after the other, into the file that the user
/// chooses, of one of the types. The user is told of success by Services::tellSaved, of a failure by one
/// error alert.
void saveThroughPanel(const std::vector<std::string>& types, std::vector<SharedText> parts);

/// The second half of that, for a panel that ended with its OK button.
void writeToChosenFile(const SavePanel& panel, const std::vector<std::string_view>& parts);

}  // namespace pelmarix::platform
