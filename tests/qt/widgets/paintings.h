// Whether a widget is drawn anew.
#pragma once

#include <QApplication>
#include <QEvent>
#include <QWidget>
#include <functional>

namespace pelmarix::test {

/// Watches a widget as long as it lives.
class Paintings final : public QObject {
 public:
  explicit Paintings(QWidget& widget) { widget.installEventFilter(this); }

  /// Whether something that is done has the widget drawn.
  bool follow(const std::function<void()>& change) {
    QApplication::processEvents();
    count_ = 0;
    change();
    QApplication::processEvents();
    return count_ > 0;
  }

 private:
  bool eventFilter(QObject* /*watched*/, QEvent* event) override {
    if (event->type() == QEvent::Paint) ++count_;
    return false;
  }

  int count_ = 0;
};

}  // namespace pelmarix::test
