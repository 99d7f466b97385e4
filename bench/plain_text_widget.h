// What the toolkit's own widget for text takes to show a report or a bill of materials.
#pragma once

#include <QMimeData>
#include <QPlainTextEdit>
#include <string>
#include <utility>

#include "platform/text.h"
#include "qt/services/text_conversion.h"
#include "qt/widgets/text_search.h"
#include "qt/widgets/visible_text.h"

namespace pelmarix::bench {

/// As the program used it until it had a view of its own: a second copy of the text to search in, signs for
/// what the toolkit would take for line ends, and copies that are made when somebody takes them.
class PlainTextWidget final : public QPlainTextEdit {
 public:
  explicit PlainTextWidget(QWidget* parent = nullptr) : QPlainTextEdit(parent) {
    setReadOnly(true);
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    setUndoRedoEnabled(false);
    setLineWrapMode(NoWrap);
  }

  void showText(platform::SharedText text) {
    text_ = std::move(text);
    shown_ = qt::visible(qt::toQString(*text_));
    setPlainText(shown_);
  }

  bool selectMatch(const QString& text) {
    QTextCursor selection = textCursor();
    const qsizetype at = qt::indexOfIgnoringCase(shown_, text, selection.selectionEnd());
    if (at < 0) return false;
    selection.setPosition(static_cast<int>(at));
    selection.setPosition(static_cast<int>(at + text.size()), QTextCursor::KeepAnchor);
    setTextCursor(selection);
    return true;
  }

 protected:
  QMimeData* createMimeDataFromSelection() const override {
    class PartOfText final : public QMimeData {
     public:
      PartOfText(platform::SharedText text, int begin, int end)
          : text_(std::move(text)), begin_(begin), end_(end) {}
      QStringList formats() const override { return {QStringLiteral("text/plain")}; }

     protected:
      QVariant retrieveData(const QString& format, QMetaType /*preferredType*/) const override {
        return formats().contains(format) ? qt::toQString(*text_).mid(begin_, end_ - begin_) : QVariant();
      }

     private:
      platform::SharedText text_;
      int begin_;
      int end_;
    };
    return new PartOfText(text_, textCursor().selectionStart(), textCursor().selectionEnd());
  }

 private:
  platform::SharedText text_ = platform::shareText({});
  QString shown_;
};

}  // namespace pelmarix::bench
