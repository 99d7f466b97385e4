// The sheet that shows one bill of materials.
#pragma once

#include <any>

#include "platform/controls.h"
#include "platform/text.h"
#include "platform/view_controller.h"

namespace pelmarix::ui {

/// Made anew each time the sheet is opened: first its represented object is set to the listing, then its view
/// loads.
class BoMoverViewController final : public platform::ViewController {
 public:
  /// Text (a SharedText) becomes what the sheet will show; anything else leaves that as it was. What is on
  /// screen already doesn't change.
  void setRepresentedObject(std::any object) override;

  void viewDidLoad() override;
  /// Puts theOutText into outputTextbox, which must be connected.
  void showOutText();
  /// The close button's action.
  void closeButton(platform::Object* sender);

  platform::SharedText theOutText = platform::shareText({});
  platform::ScrollView* outputScrollView = nullptr;
  platform::TextView* outputTextbox = nullptr;
};

}  // namespace pelmarix::ui
