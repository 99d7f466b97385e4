#include "qt/window/about_box.h"

#include <QPushButton>

#include "app/addresses.h"
#include "platform/bundle.h"
#include "qt/services/text_conversion.h"
#include "ui_about_box.h"

namespace pelmarix::qt {
namespace {

// Empty when the bundle doesn't tell.
QString version() {
  const platform::InfoDictionary info =
      platform::Bundle::mainBundle().infoDictionary().value_or(platform::InfoDictionary());
  const auto found = info.find("CFBundleShortVersionString");
  const auto* text = found == info.end() ? nullptr : std::any_cast<std::string>(&found->second);
  return text == nullptr ? QString() : toQString(*text);
}

}  // namespace

void showAbout(QWidget& window, AppDelegate& delegate) {
  auto* box = new QDialog(&window);
  box->setAttribute(Qt::WA_DeleteOnClose);
  Ui::AboutBox ui;
  ui.setupUi(box);
  const int side = 4 * box->fontMetrics().height();
  ui.icon->setPixmap(window.windowIcon().pixmap(QSize(side, side), box->devicePixelRatioF()));
  ui.name->setText(QStringLiteral("Pelmarix ") + version());
  ui.link->setText(QStringLiteral("<a href=\"%1\">%1</a>").arg(QLatin1String(supportPageAddress)));
  QObject::connect(ui.link, &QLabel::linkActivated, box, [&delegate] { delegate.openSupport(nullptr); });
  ui.buttons->button(QDialogButtonBox::Close)->setFocus();
  box->open();
}

}  // namespace pelmarix::qt
