#include "qt/message_alert.h"

#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <utility>

#include "qt/text_conversion.h"

namespace pelmarix::qt {
namespace {

QMessageBox::Icon iconOf(AlertStyle style) {
  switch (style) {
    case AlertStyle::informational:
      return QMessageBox::Information;
    case AlertStyle::critical:
      return QMessageBox::Critical;
    default:
      return QMessageBox::Warning;
  }
}

/// Texts can come from files and from the network: nothing in them is markup.
void showPlainly(QMessageBox& box) {
  for (QLabel* label : box.findChildren<QLabel*>()) label->setTextFormat(Qt::PlainText);
  if (auto* message = box.findChild<QLabel*>(QStringLiteral("qt_msgbox_label"))) {
    QFont bold = message->font();
    bold.setBold(true);
    message->setFont(bold);
  }
}

}  // namespace

MessageAlert::MessageAlert(QWidget* parent, MainQueue& mainQueue, std::function<bool()> isTerminating)
    : parent_(parent), mainQueue_(mainQueue), isTerminating_(std::move(isTerminating)) {}

int MessageAlert::runModal() {
  if (isTerminating_()) return alertFirstButtonReturn;
  QMessageBox box(parent_);
  box.setWindowTitle(QStringLiteral("Pelmarix"));
  box.setIcon(iconOf(style_));
  box.setText(toQString(messageText_));
  box.setInformativeText(toQString(informativeText_));
  showPlainly(box);
  std::vector<QPushButton*> buttons;
  for (const std::string& title : buttons_) {
    // All of one role: the box keeps their order.
    const QString text = toQString(title).replace(QLatin1Char('&'), QLatin1String("&&"));
    buttons.push_back(box.addButton(text, QMessageBox::ActionRole));
  }
  if (!buttons.empty()) {
    box.setDefaultButton(buttons.front());
    box.setEscapeButton(buttons.front());
  }
  const MainQueue::Pause pause(mainQueue_);
  box.exec();
  for (std::size_t i = 0; i < buttons.size(); ++i)
    if (box.clickedButton() == buttons[i]) return alertFirstButtonReturn + static_cast<int>(i);
  return alertFirstButtonReturn;
}

}  // namespace pelmarix::qt
