// Random texts beside a plain model of them: a list of characters with their bytes and UTF-16 units.
#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QTest>
#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "qt/services/text_conversion.h"
#include "qt/widgets/plain_text_view.h"
#include "qt/widgets/visible_text.h"

namespace pelmarix::test {
namespace {

struct Model {
  std::vector<std::string> characters;
  std::vector<std::size_t> places{0};  ///< before each character, and at the end
  std::vector<std::size_t> offsets{0};
  std::vector<std::size_t> lines{0};
  std::string text;

  void add(char32_t code) {
    const std::string bytes = QStringView(QChar::fromUcs4(code)).toUtf8().toStdString();
    characters.push_back(bytes);
    text += bytes;
    places.push_back(text.size());
    offsets.push_back(offsets.back() + (code < 0x10000 ? 1 : 2));
    lines.push_back(lines.back() + (code == U'\n' ? 1 : 0));
  }
};

class RandomText {
 public:
  explicit RandomText(unsigned seed) : random_(seed) {}

  std::size_t below(std::size_t end) { return random_() % end; }
  Model text() {
    static constexpr std::size_t lengths[] = {0, 1, 5, 60, 700, 5000, 20000};
    Model model;
    const std::size_t length = lengths[below(std::size(lengths))];
    const std::size_t usualLine = 1 + below(6000);
    while (model.characters.size() < length) model.add(below(usualLine) == 0 ? U'\n' : character());
    return model;
  }

 private:
  char32_t character() {
    // Scripts from left and from right, combining marks, controls, what the toolkit keeps for itself,
    // pictures.
    static constexpr char32_t firsts[] = {
        0,      0x20,   0x41,   0x80,   0x300,   0x391,   0x410,   0x5d0,   0x620,   0x64b,
        0x905,  0xe01,  0x1100, 0x2000, 0x2028,  0x202a,  0x2066,  0x3042,  0x4e00,  0xac00,
        0xfb1d, 0xfdd0, 0xfeff, 0xfff9, 0x10400, 0x1d11e, 0x1f600, 0x1f468, 0xe0001, 0x10fffd};
    const char32_t code = firsts[below(std::size(firsts))] + static_cast<char32_t>(below(24));
    return code > 0x10ffff || code == U'\n' ? U'x' : code;
  }

  std::mt19937 random_;
};

class PlainTextViewRandom : public testing::TestWithParam<unsigned> {};

TEST_P(PlainTextViewRandom, CopiesAndMapsWhatTheModelSays) {
  RandomText random(GetParam());
  const Model model = random.text();
  qt::PlainTextView view;
  view.resize(300, 200);
  view.show();
  view.showText(platform::shareText(model.text));
  QAccessibleTextInterface& bus = *QAccessible::queryAccessibleInterface(&view)->textInterface();
  ASSERT_EQ(bus.characterCount(), static_cast<int>(model.offsets.back()));
  ASSERT_EQ(view.index().lineCount(), model.lines.back() + 1);
  for (std::size_t i = 0; i < model.places.size(); ++i) {
    ASSERT_EQ(view.index().utf16Before(model.places[i]), model.offsets[i]);
    ASSERT_EQ(view.index().placeAfterUtf16(model.offsets[i]), model.places[i]);
    ASSERT_EQ(view.index().lineAt(model.places[i]), model.lines[i]);
  }
  const auto anyPlace = [&] { return random.below(model.places.size()); };
  for (int round = 0; round < 30; ++round) {
    const std::size_t one = anyPlace();
    const std::size_t other = anyPlace();
    const auto [first, last] = std::minmax(one, other);
    const std::string selected =
        model.text.substr(model.places[first], model.places[last] - model.places[first]);
    bus.setSelection(0, static_cast<int>(model.offsets[one]), static_cast<int>(model.offsets[other]));
    ASSERT_EQ(bus.cursorPosition(), static_cast<int>(model.offsets[other]));
    QApplication::clipboard()->clear();
    view.copy();
    ASSERT_EQ(qt::toUtf8(QApplication::clipboard()->text()), selected);
    const QString told =
        bus.text(static_cast<int>(model.offsets[first]), static_cast<int>(model.offsets[last]));
    ASSERT_EQ(qt::visible(told), qt::visible(qt::toQString(selected)));
    view.reveal(model.places[one]);
    const QRectF rect = view.rectOf(model.places[one]).normalized();
    ASSERT_TRUE(QRectF(view.viewport()->rect()).intersects(rect.adjusted(-1, 0, 1, 0))) << model.places[one];
    ASSERT_EQ(view.index().lineAt(view.placeAt(rect.center())), model.lines[one]);
  }
}

TEST_P(PlainTextViewRandom, GoesThroughAllOfItByKeysInBothDirections) {
  RandomText random(GetParam());
  const Model model = random.text();
  qt::PlainTextView view;
  view.resize(300, 200);
  view.show();
  view.showText(platform::shareText(
      model.text.substr(0, model.places[std::min<std::size_t>(model.characters.size(), 100)])));
  const std::size_t size = view.text()->size();
  for (const Qt::KeyboardModifiers modifiers :
       {Qt::KeyboardModifiers(), Qt::KeyboardModifiers(Qt::ControlModifier)}) {
    for (std::size_t before = 0; view.caret() < size; before = view.caret()) {
      QTest::keyClick(&view, Qt::Key_Right, modifiers);
      ASSERT_GT(view.caret(), before);
      ASSERT_TRUE(std::binary_search(model.places.begin(), model.places.end(), view.caret())) << view.caret();
    }
    for (std::size_t before = size; view.caret() > 0; before = view.caret()) {
      QTest::keyClick(&view, Qt::Key_Left, modifiers);
      ASSERT_LT(view.caret(), before);
      ASSERT_TRUE(std::binary_search(model.places.begin(), model.places.end(), view.caret())) << view.caret();
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Seeds, PlainTextViewRandom, testing::Range(0U, 25U));

}  // namespace
}  // namespace pelmarix::test
