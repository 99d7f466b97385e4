// Texts that a screen reader says of itself.
#pragma once

#include <QWidget>

namespace pelmarix::qt {

/// Never seen. Qt 6.4 has no announcements, but readers say a notification that comes up, wherever the focus
/// is.
class Announcer final : public QWidget {
  Q_OBJECT

 public:
  explicit Announcer(QWidget* parent);

  void announce(const QString& text);
};

}  // namespace pelmarix::qt
