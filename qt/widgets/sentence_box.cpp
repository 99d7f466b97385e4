#include "qt/widgets/sentence_box.h"

#include "qt/services/text_conversion.h"
#include "qt/widgets/visible_text.h"

namespace pelmarix::qt {
namespace {

// To measure and to paint a text takes time. What is wrong stands at the end.
constexpr qsizetype longestPart = 500;

QString shown(const std::string& sentence) {
  QString text = visibleInOneLine(toQString(sentence));
  if (text.size() <= 2 * longestPart) return text;
  return text.left(longestPart) + QChar(u'…') + text.right(longestPart);
}

}  // namespace

SentenceBox::SentenceBox(QWidget* parent, const std::string& sentence)
    : QMessageBox(Warning, QStringLiteral("Pelmarix"), shown(sentence), Ok, parent) {
  setTextFormat(Qt::PlainText);
}

void SentenceBox::tell(QWidget* window, const std::string& sentence) {
  auto* box = new SentenceBox(window, sentence);
  box->setAttribute(Qt::WA_DeleteOnClose);
  box->open();
}

}  // namespace pelmarix::qt
