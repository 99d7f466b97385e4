#include "ui/bom_over_view_controller.h"

#include <utility>

#include "base/fatal.h"

namespace pelmarix::ui {

void BoMoverViewController::setRepresentedObject(std::any object) {
  platform::ViewController::setRepresentedObject(std::move(object));
  if (const auto* text = std::any_cast<platform::SharedText>(&representedObject())) theOutText = *text;
}

void BoMoverViewController::viewDidLoad() {
  platform::ViewController::viewDidLoad();
  showOutText();
}

void BoMoverViewController::showOutText() {
  // No font: the text view keeps the one that the interface file gives it.
  if (platform::TextStorage* storage =
          required(outputTextbox, "outputTextbox is not connected").textStorage())
    storage->setAttributedString({theOutText, platform::Color::text, std::nullopt});
}

void BoMoverViewController::closeButton(platform::Object* /*sender*/) { dismissViewController(*this); }

}  // namespace pelmarix::ui
