#include "qt/widgets/plain_text_view_accessible.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QPlainTextEdit>
#include <algorithm>
#include <string>
#include <utility>

#include "qt/widgets/plain_text_view.h"

namespace pelmarix::test {
namespace {

using namespace std::string_literals;

struct Told {
  QString text;
  int begin = 0;
  int end = 0;
  friend bool operator==(const Told&, const Told&) = default;
};

class PlainTextViewAccessible : public testing::Test {
 protected:
  PlainTextViewAccessible() {
    view.setAccessibleName(QStringLiteral("Report"));
    view.setAccessibleDescription(QStringLiteral("One line for each entry"));
    view.resize(400, 300);
    view.show();
  }

  void show(const std::string& text) { view.showText(platform::shareText(text)); }
  static QAccessibleInterface& interfaceOf(QWidget& widget) {
    return *QAccessible::queryAccessibleInterface(&widget);
  }
  QAccessibleTextInterface& bus() { return *interfaceOf(view).textInterface(); }
  Told at(int offset, QAccessible::TextBoundaryType type) {
    Told told;
    told.text = bus().textAtOffset(offset, type, &told.begin, &told.end);
    return told;
  }
  Told before(int offset, QAccessible::TextBoundaryType type) {
    Told told;
    told.text = bus().textBeforeOffset(offset, type, &told.begin, &told.end);
    return told;
  }
  Told after(int offset, QAccessible::TextBoundaryType type) {
    Told told;
    told.text = bus().textAfterOffset(offset, type, &told.begin, &told.end);
    return told;
  }

  qt::PlainTextView view;
};

TEST_F(PlainTextViewAccessible, IsToAScreenReaderWhatTheToolkitsTextIs) {
  QPlainTextEdit toolkits;
  toolkits.setReadOnly(true);
  toolkits.setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  toolkits.setAccessibleName(view.accessibleName());
  toolkits.setAccessibleDescription(view.accessibleDescription());
  toolkits.resize(400, 300);
  toolkits.show();
  show("text");
  toolkits.setPlainText(QStringLiteral("text"));
  QAccessibleInterface& one = interfaceOf(view);
  QAccessibleInterface& other = interfaceOf(toolkits);
  EXPECT_EQ(one.role(), other.role());
  EXPECT_EQ(one.text(QAccessible::Name), other.text(QAccessible::Name));
  EXPECT_EQ(one.text(QAccessible::Description), other.text(QAccessible::Description));
  EXPECT_EQ(one.childCount(), other.childCount());
  for (QWidget* widget : {static_cast<QWidget*>(&view), static_cast<QWidget*>(&toolkits)}) {
    const QAccessible::State state = interfaceOf(*widget).state();
    EXPECT_TRUE(state.readOnly && state.focusable && state.multiLine && state.selectableText);
    EXPECT_FALSE(state.editable);
  }
  for (const bool isBold : {false, true}) {
    QFont font = view.font();
    font.setBold(isBold);
    font.setItalic(isBold);
    view.setFont(font);
    toolkits.setFont(font);
    std::pair told(-1, -1);
    std::pair expected(-1, -1);
    EXPECT_EQ(bus().attributes(2, &told.first, &told.second),
              interfaceOf(toolkits).textInterface()->attributes(2, &expected.first, &expected.second));
    EXPECT_EQ(told, expected);
  }
}

TEST_F(PlainTextViewAccessible, TellsCharactersAndLinesAsTheToolkitDoes) {
  const char* const text = "ab c: d.e\n\nx \u00e9\u0301\U0001f600y\nlast";
  QPlainTextEdit toolkits(QString::fromUtf8(text));
  show(text);
  QAccessibleTextInterface& other = *interfaceOf(toolkits).textInterface();
  ASSERT_EQ(bus().characterCount(), other.characterCount());
  EXPECT_EQ(bus().text(0, bus().characterCount()), other.text(0, other.characterCount()));
  for (int offset = 0; offset < other.characterCount(); ++offset) {
    for (const auto type :
         {QAccessible::LineBoundary, QAccessible::ParagraphBoundary, QAccessible::NoBoundary}) {
      Told expected;
      expected.text = other.textAtOffset(offset, type, &expected.begin, &expected.end);
      EXPECT_EQ(at(offset, type), expected) << offset << ", " << type;
    }
  }
  for (const int offset : {0, 5, 9, 10, 13, 15, 17, 18}) {  // where characters begin
    Told expected;
    expected.text = other.textAtOffset(offset, QAccessible::CharBoundary, &expected.begin, &expected.end);
    EXPECT_EQ(at(offset, QAccessible::CharBoundary), expected) << offset;
  }
}

TEST_F(PlainTextViewAccessible, TellsWhatIsBeforeAndAfter) {
  show("one two\n\nlast\n");
  using enum QAccessible::TextBoundaryType;
  EXPECT_EQ(at(5, WordBoundary), (Told{QStringLiteral("two"), 4, 7}));
  EXPECT_EQ(before(5, WordBoundary), (Told{QStringLiteral(" "), 3, 4}));
  EXPECT_EQ(after(0, WordBoundary), (Told{QStringLiteral(" "), 3, 4}));
  EXPECT_EQ(after(2, LineBoundary), (Told{QString(), 8, 8}));
  EXPECT_EQ(after(8, LineBoundary), (Told{QStringLiteral("last"), 9, 13}));
  EXPECT_EQ(after(9, LineBoundary), (Told{QString(), 14, 14}));
  EXPECT_EQ(before(9, LineBoundary), (Told{QString(), 8, 8}));
  EXPECT_EQ(before(8, LineBoundary), (Told{QStringLiteral("one two"), 0, 7}));
  EXPECT_EQ(before(3, LineBoundary), (Told{QString(), 0, 0}));
  EXPECT_EQ(after(0, CharBoundary), (Told{QStringLiteral("n"), 1, 2}));
  EXPECT_EQ(after(6, CharBoundary), (Told{QStringLiteral("\n"), 7, 8}));
  EXPECT_EQ(after(7, CharBoundary), (Told{QStringLiteral("\n"), 8, 9}));
  EXPECT_EQ(after(13, CharBoundary), (Told{QString(), 14, 14}));
  EXPECT_EQ(before(1, CharBoundary), (Told{QStringLiteral("o"), 0, 1}));
  EXPECT_EQ(before(0, CharBoundary), (Told{QString(), 0, 0}));
}

TEST_F(PlainTextViewAccessible, TellsSignsForControlsButThoseOfDirectionAsTheyAre) {
  show("a\0\r\x7f\u202ex"s);
  EXPECT_EQ(bus().text(0, 6), QString::fromUtf16(u"a\u2400\u240d\u2421\u202ex"));
  show("\u202ex");
  EXPECT_EQ(bus().text(0, 2), QString::fromUtf16(u"\u202ex"));
}

TEST_F(PlainTextViewAccessible, SurvivesOffsetsThatAreNowhere) {
  show("a\U0001f600b");
  EXPECT_EQ(bus().text(-5, 100), QString::fromUtf8("a\U0001f600b"));
  EXPECT_EQ(bus().text(3, 1), QString());
  EXPECT_EQ(at(100, QAccessible::LineBoundary).end, 4);
  EXPECT_EQ(bus().characterRect(100).width(), 0);
  bus().setSelection(1, 0, 3);
  bus().removeSelection(1);
  EXPECT_EQ(bus().selectionCount(), 0);
  bus().setSelection(0, -3, 99);
  EXPECT_EQ(view.selection(), (qt::TextRange{0, 6}));
  bus().setCursorPosition(-1);
  EXPECT_EQ(view.caret(), 0U);
}

TEST_F(PlainTextViewAccessible, SelectsAndTellsWhatIsSelected) {
  show("\U0001f600one two\n");
  EXPECT_EQ(bus().selectionCount(), 0);
  bus().addSelection(2, 5);
  EXPECT_EQ(view.selection(), (qt::TextRange{4, 7}));
  view.select(11, 8);
  EXPECT_EQ(bus().selectionCount(), 1);
  int begin = -1;
  int end = -1;
  bus().selection(0, &begin, &end);
  EXPECT_EQ((std::pair{begin, end}), (std::pair{6, 9}));
  EXPECT_EQ(bus().cursorPosition(), 6);
  bus().removeSelection(0);
  EXPECT_EQ(bus().selectionCount(), 0);
  EXPECT_EQ(bus().cursorPosition(), 6);
}

TEST_F(PlainTextViewAccessible, TellsWhereLettersAreBesideOthersThatGoToTheLeft) {
  show("abc \u05e9\u05dc\u05d5\u05dd def");
  const int space = bus().characterRect(3).width();
  EXPECT_NEAR(bus().characterRect(3).right() + 1, bus().characterRect(7).left(), 1);
  EXPECT_NEAR(bus().characterRect(8).width(), space, 1);
  // Not the first of them, whose beginning the toolkit takes to be where the blank ahead of it ends.
  for (int offset = 5; offset < 7; ++offset)
    EXPECT_NEAR(bus().characterRect(offset).left(), bus().characterRect(offset + 1).right() + 1, 1) << offset;
}

TEST_F(PlainTextViewAccessible, TellsWhereCharactersAreOnScreen) {
  show("first\n" + std::string(1000, '\n') + "last");
  const QRect letter = bus().characterRect(1);
  EXPECT_GT(letter.width(), 0);
  EXPECT_EQ(bus().offsetAtPoint(letter.center() - QPoint(letter.width() / 4, 0)), 1);
  EXPECT_EQ(bus().offsetAtPoint(view.viewport()->mapToGlobal(QPoint(-1, 5))), -1);
  const QRect viewport(view.viewport()->mapToGlobal(QPoint(0, 0)), view.viewport()->size());
  EXPECT_TRUE(viewport.contains(letter));
  EXPECT_FALSE(viewport.contains(bus().characterRect(1008)));
  bus().scrollToSubstring(1008, 1010);
  EXPECT_TRUE(viewport.contains(bus().characterRect(1008)));
  show(std::string(1000, '\n'));
  const auto lineIsInView = [&](int offset) {
    return viewport.contains(bus().characterRect(offset).topLeft());
  };
  for (const int begin : {500, 100, 103}) {
    bus().scrollToSubstring(begin, begin + 3);
    EXPECT_TRUE(lineIsInView(begin) && lineIsInView(begin + 3)) << begin;
  }
  bus().scrollToSubstring(200, 900);
  EXPECT_TRUE(lineIsInView(200)) << "its beginning where not all has room";
}

TEST_F(PlainTextViewAccessible, TellsTheBeginningOfAnEndlessText) {
  for (const std::size_t size : {65535U, 65536U, 65537U}) {
    show(std::string(size, 'x'));
    EXPECT_EQ(qt::spokenBeginning(view.index()).size(), std::min<std::size_t>(size, 65536));
  }
}

}  // namespace
}  // namespace pelmarix::test
