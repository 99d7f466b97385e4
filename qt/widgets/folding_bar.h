// A heading, options and buttons in one row, or in two where that is too narrow for them.
#pragma once

#include <QGridLayout>
#include <QWidget>

namespace pelmarix::qt {

/// Its layout is a grid whose items are heading, space, options and buttons; the options go below the others.
class FoldingBar final : public QWidget {
  Q_OBJECT

 public:
  using QWidget::QWidget;

  /// That of two rows in any case, or no window could become so narrow that they are needed.
  QSize minimumSizeHint() const override;

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  QGridLayout& grid() const { return *static_cast<QGridLayout*>(layout()); }
  QLayoutItem* options() const;
};

}  // namespace pelmarix::qt
