// The widget behind the report and the bill of materials: a plain text to read, copy and search.
#pragma once

#include <QPlainTextEdit>

#include "platform/text.h"
#include "qt/widgets/searchable.h"

namespace pelmarix::qt {

/// Every line feed ends a line and nothing else does. Characters that Qt would take for line ends or drop are
/// shown by a sign of their own; copying gives them as they are. A million lines of some 75 letters take 3 s
/// to show, and 680 MB.
class PlainTextWidget final : public QPlainTextEdit, public Searchable {
  Q_OBJECT

 public:
  explicit PlainTextWidget(QWidget* parent = nullptr);

  /// UTF-8. The text that is shown already is not laid out anew.
  void showText(platform::SharedText text);
  const platform::SharedText& text() const { return text_; }

  void markMatches(const QString& text) override;
  bool selectMatch(const QString& text, SearchStart start, SearchDirection direction) override;

 signals:
  /// The user turned the wheel with the control key held: bigger by so many steps, smaller when negative.
  void zoomRequested(int steps);

 protected:
  QMimeData* createMimeDataFromSelection() const override;
  void paintEvent(QPaintEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;

 private:
  void paintMatches(QPainter& painter, const QTextBlock& block, const QPointF& topLeft) const;

  platform::SharedText text_ = platform::shareText({});
  // What the document shows of it, to search in.
  QString shown_;
  QString marked_;
  int wheelAngle_ = 0;  // eighths of a degree, since the last step of zooming
};

}  // namespace pelmarix::qt
