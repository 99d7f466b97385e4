#include "qt/widgets/plain_text_view_accessible.h"

#include <QAccessibleWidget>
#include <algorithm>

#include "qt/services/text_conversion.h"
#include "qt/widgets/plain_text_view.h"
#include "qt/widgets/visible_text.h"

namespace pelmarix::qt {
namespace {

// With signs for what a screen reader can't say and for NUL, which ends what the bus carries. Controls of
// writing direction are said as they are: they turn nothing around there.
QString spoken(std::string_view utf8) {
  const QString text = toQString(utf8);
  QString signs = visible(text);
  for (qsizetype i = 0; i < text.size(); ++i)
    if (text[i].category() == QChar::Other_Format) signs[i] = text[i];
  return signs;
}

class AccessibleText final : public QAccessibleWidget, public QAccessibleTextInterface {
 public:
  explicit AccessibleText(PlainTextView& view)
      : QAccessibleWidget(&view, QAccessible::EditableText), view_(view) {}

  void* interface_cast(QAccessible::InterfaceType type) override {
    if (type == QAccessible::TextInterface) return static_cast<QAccessibleTextInterface*>(this);
    return QAccessibleWidget::interface_cast(type);
  }
  QAccessible::State state() const override {
    QAccessible::State state = QAccessibleWidget::state();
    state.readOnly = true;
    state.multiLine = true;
    state.selectableText = true;
    return state;
  }

  int characterCount() const override { return offsetOf(view_.text()->size()); }
  QString text(int startOffset, int endOffset) const override {
    return textOf({placeOf(startOffset), std::max(placeOf(startOffset), placeOf(endOffset))});
  }
  using QAccessibleWidget::text;

  QString textAtOffset(int offset, QAccessible::TextBoundaryType type, int* startOffset,
                       int* endOffset) const override {
    return tell(unitAt(placeOf(offset), type), startOffset, endOffset);
  }
  QString textBeforeOffset(int offset, QAccessible::TextBoundaryType type, int* startOffset,
                           int* endOffset) const override {
    const std::size_t begin = unitAt(placeOf(offset), type).begin;
    const std::size_t before = previousPlace(index(), begin, TextUnit::character);
    return tell(begin == 0 ? TextRange{} : unitAt(before, type), startOffset, endOffset);
  }
  QString textAfterOffset(int offset, QAccessible::TextBoundaryType type, int* startOffset,
                          int* endOffset) const override {
    const TextRange here = unitAt(placeOf(offset), type);
    // The last word of a line is followed by the next line's first; its last letter by the line feed.
    const bool endsLine =
        type != QAccessible::CharBoundary && here.end == index().line(index().lineAt(here.begin)).end;
    const std::size_t after = endsLine ? nextPlace(index(), here.end, TextUnit::character) : here.end;
    const bool isLast = here.end == view_.text()->size();
    return tell(isLast ? TextRange{here.end, here.end} : unitAt(after, type), startOffset, endOffset);
  }

  int cursorPosition() const override { return offsetOf(view_.caret()); }
  void setCursorPosition(int position) override { view_.select(placeOf(position), placeOf(position)); }
  int selectionCount() const override { return view_.selection().isEmpty() ? 0 : 1; }
  void selection(int selectionIndex, int* startOffset, int* endOffset) const override {
    const TextRange selected = selectionIndex == 0 ? view_.selection() : TextRange{};
    *startOffset = offsetOf(selected.begin);
    *endOffset = offsetOf(selected.end);
  }
  void addSelection(int startOffset, int endOffset) override { setSelection(0, startOffset, endOffset); }
  void setSelection(int selectionIndex, int startOffset, int endOffset) override {
    if (selectionIndex == 0) view_.select(placeOf(startOffset), placeOf(endOffset));
  }
  void removeSelection(int selectionIndex) override {
    if (selectionIndex == 0) view_.select(view_.caret(), view_.caret());
  }

  QRect characterRect(int offset) const override {
    const QRect rect = view_.rectOf(placeOf(offset)).normalized().toRect();
    return {view_.viewport()->mapToGlobal(rect.topLeft()), rect.size()};
  }
  int offsetAtPoint(const QPoint& point) const override {
    const QPoint inView = view_.viewport()->mapFromGlobal(point);
    return view_.viewport()->rect().contains(inView) ? offsetOf(view_.placeAt(inView)) : -1;
  }
  void scrollToSubstring(int startIndex, int endIndex) override {
    view_.reveal(placeOf(endIndex));
    view_.reveal(placeOf(startIndex));
  }
  // The same for all of the text.
  QString attributes(int /*offset*/, int* startOffset, int* endOffset) const override {
    *startOffset = 0;
    *endOffset = characterCount();
    const QFont& font = view_.font();
    return QStringLiteral(
               "font-family:\"%1\";font-size:%2pt;font-weight:%3;font-style:%4;text-position:baseline;text-"
               "align:left;")
        .arg(font.family(), QString::number(font.pointSizeF()),
             font.bold() ? QStringLiteral("bold") : QStringLiteral("normal"),
             font.italic() ? QStringLiteral("italic") : QStringLiteral("normal"));
  }

 private:
  const TextIndex& index() const { return view_.index(); }
  std::size_t placeOf(int offset) const {
    return index().placeAfterUtf16(static_cast<std::size_t>(std::max(offset, 0)));
  }
  int offsetOf(std::size_t place) const { return static_cast<int>(index().utf16Before(place)); }
  QString textOf(TextRange range) const { return spoken(index().part(range)); }

  TextRange unitAt(std::size_t place, QAccessible::TextBoundaryType type) const {
    switch (type) {
      case QAccessible::CharBoundary:
        return {place, nextPlace(index(), place, TextUnit::character)};
      case QAccessible::WordBoundary:
        return unitAround(index(), place, TextUnit::word);
      case QAccessible::NoBoundary:
        return {0, view_.text()->size()};
      default:
        return index().line(index().lineAt(place));
    }
  }
  QString tell(TextRange range, int* startOffset, int* endOffset) const {
    *startOffset = offsetOf(range.begin);
    *endOffset = offsetOf(range.end);
    return textOf(range);
  }

  PlainTextView& view_;
};

QAccessibleInterface* accessibleText(const QString& /*className*/, QObject* object) {
  auto* const view = qobject_cast<PlainTextView*>(object);
  return view == nullptr ? nullptr : new AccessibleText(*view);
}

}  // namespace

void installAccessibleTexts() {
  static const bool isInstalled = (QAccessible::installFactory(accessibleText), true);
  static_cast<void>(isInstalled);
}

QString spokenBeginning(const TextIndex& text) {
  constexpr std::size_t longest = 65536;
  return spoken(text.part({0, text.placeAt(longest)}));
}

void tellTextChanged(PlainTextView& view, const QString& before) {
  QAccessibleTextUpdateEvent event(&view, 0, before, spokenBeginning(view.index()));
  QAccessible::updateAccessibility(&event);
}

void tellSelectionChanged(PlainTextView& view) {
  const auto offsetOf = [&view](std::size_t place) {
    return static_cast<int>(view.index().utf16Before(place));
  };
  QAccessibleTextSelectionEvent selection(&view, offsetOf(view.anchor()), offsetOf(view.caret()));
  QAccessible::updateAccessibility(&selection);
  QAccessibleTextCursorEvent caret(&view, offsetOf(view.caret()));
  QAccessible::updateAccessibility(&caret);
}

}  // namespace pelmarix::qt
