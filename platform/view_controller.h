// View controllers and the segues from one to another.
#pragma once

#include <any>
#include <functional>
#include <utility>

#include "platform/object.h"
#include "platform/window.h"

namespace pelmarix::platform {

class Segue;

/// The toolkit calls viewDidLoad once, when all outlets are connected, and viewDidAppear each time the view
/// has come on screen. All of it happens on the main thread.
class ViewController : public Object {
 public:
  virtual void viewDidLoad() {}
  virtual void viewDidAppear() {}
  /// Called before the segue's destination loads its view. An exception ends the segue.
  virtual void prepareForSegue(Segue& /*segue*/, Object* /*sender*/) {}

  /// What the controller stands for; text is a SharedText. Empty at first.
  const std::any& representedObject() const { return representedObject_; }
  virtual void setRepresentedObject(std::any object) { representedObject_ = std::move(object); }

  /// The window that shows the view, null before there is one.
  Window* window() const { return window_; }
  void setWindow(Window* window) { window_ = window; }

  /// Ends the presentation of `controller`, as the toolkit's presenter knows how; without a presenter nothing
  /// happens.
  void dismissViewController(ViewController& controller) {
    if (dismisser_) dismisser_(controller);
  }
  void setDismisser(std::function<void(ViewController&)> dismisser) { dismisser_ = std::move(dismisser); }

 private:
  std::any representedObject_;
  Window* window_ = nullptr;
  std::function<void(ViewController&)> dismisser_;
};

class Segue {
 public:
  explicit Segue(ViewController& destination) : destination_(destination) {}
  ViewController& destinationController() const { return destination_; }

 private:
  ViewController& destination_;
};

}  // namespace pelmarix::platform
