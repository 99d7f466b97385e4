#include "qt/window/message_alert.h"

#include <QLabel>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <utility>

#include "qt/services/text_conversion.h"
#include "qt/widgets/visible_text.h"

namespace pelmarix::qt {
namespace {

// To measure and to paint a text takes time, and nobody reads this much.
constexpr qsizetype longestText = 10'000;

QString shown(const std::string& text) {
  QString result = visible(toQString(text));
  if (result.size() <= longestText) return result;
  result.truncate(longestText - 1);
  if (result.back().isHighSurrogate()) result.chop(1);
  return result + QChar(u'…');
}

// Texts can come from files and from the network: nothing in them is markup. The box itself can be told so
// for the message only, and its labels can be reached as its children only.
void showPlainly(QMessageBox& box) {
  for (QLabel* label : box.findChildren<QLabel*>()) {
    label->setTextFormat(Qt::PlainText);
    if (label->objectName() != QLatin1String("qt_msgbox_label")) continue;
    QFont bold = label->font();
    bold.setBold(true);
    label->setFont(bold);
  }
}

}  // namespace

MessageAlert::MessageAlert(QWidget* parent, MainQueue& mainQueue, std::function<bool()> isTerminating)
    : parent_(parent), mainQueue_(mainQueue), isTerminating_(std::move(isTerminating)) {}

int MessageAlert::runModal() {
  if (isTerminating_()) return platform::alertFirstButtonReturn;
  // Not on the stack: a parent that goes while the box is up takes it along.
  const QPointer<QMessageBox> box(new QMessageBox(parent_));
  box->setWindowTitle(QStringLiteral("Pelmarix"));
  box->setIcon(style_ == platform::AlertStyle::critical ? QMessageBox::Critical : QMessageBox::Information);
  box->setText(shown(messageText_));
  box->setInformativeText(shown(informativeText_));
  showPlainly(*box);
  int answer = platform::alertFirstButtonReturn;
  for (std::size_t i = 0; i < buttons_.size(); ++i) {
    // All of one role: the box keeps their order.
    const QString text = visible(toQString(buttons_[i])).replace(QLatin1Char('&'), QLatin1String("&&"));
    QPushButton* button = box->addButton(text, QMessageBox::ActionRole);
    QObject::connect(button, &QPushButton::clicked,
                     [&answer, i] { answer = platform::alertFirstButtonReturn + static_cast<int>(i); });
    if (i != 0) continue;
    box->setDefaultButton(button);
    box->setEscapeButton(button);
  }
  mainQueue_.runAlone([&box] { box->exec(); });
  delete box;
  return answer;
}

}  // namespace pelmarix::qt
