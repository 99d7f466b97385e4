// A label in one line that may be narrower than its text.
#pragma once

#include <QLabel>

namespace pelmarix::qt {

/// Plain text; where there isn't enough room its middle is left out, and a tooltip has all of it.
class ElidedLabel final : public QLabel {
  Q_OBJECT

 public:
  explicit ElidedLabel(QWidget* parent = nullptr);

  QSize minimumSizeHint() const override;

 protected:
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  QString shownText() const;
};

}  // namespace pelmarix::qt
