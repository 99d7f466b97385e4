#include "ui/bom_over_view_controller.h"

#include <utility>

#include "platform/fatal.h"

namespace pelmarix::ui {

void BoMoverViewController::setRepresentedObject(std::any object) {
  pelmarix::ViewController::setRepresentedObject(std::move(object));
  if (const auto* text = std::any_cast<SharedText>(&representedObject())) theOutText = *text;
}

void BoMoverViewController::viewDidLoad() {
  pelmarix::ViewController::viewDidLoad();
  showOutText();
}

void BoMoverViewController::showOutText() {
  // No font: the text view keeps the one that the interface file gives it.
  if (TextStorage* storage = required(outputTextbox, "outputTextbox is not connected").textStorage())
    storage->setAttributedString({theOutText, Color::text, std::nullopt});
}

void BoMoverViewController::closeButton(Object* /*sender*/) { dismissViewController(*this); }

}  // namespace pelmarix::ui
