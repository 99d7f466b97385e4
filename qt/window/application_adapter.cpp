#include "qt/window/application_adapter.h"

#include <QCoreApplication>
#include <QTimer>

#include "platform/controls.h"
#include "qt/services/text_conversion.h"

namespace pelmarix::qt {
namespace {

// In Qt's menus "&" marks the letter that a key chooses, and "&&" stands for itself.
QString titleOf(const QAction& action) {
  QString title;
  const QString text = action.text();
  for (qsizetype i = 0; i < text.size(); ++i) {
    if (text.at(i) == QLatin1Char('&') && ++i == text.size()) break;
    title += text.at(i);
  }
  return title;
}

}  // namespace

void MenuItemAdapter::setState(int state) {
  action_.setCheckable(true);
  action_.setChecked(state != platform::stateOff);
}

void MenuItemAdapter::setTitle(const std::string& title) {
  action_.setText(toQString(title).replace(QLatin1Char('&'), QLatin1String("&&")));
}

platform::MenuItem* MenuAdapter::itemWithTitle(const std::string& title) {
  const QString wanted = toQString(title);
  for (QAction* action : menu_.actions())
    if (!action->isSeparator() && titleOf(*action) == wanted)
      return &items_.try_emplace(action, *action).first->second;
  return nullptr;
}

void ApplicationAdapter::terminate(platform::Object* /*sender*/) {
  isTerminating_ = true;
  // Not quit(), which would ask the windows to close, and so ask for the end again.
  QTimer::singleShot(0, qApp, [] { QCoreApplication::exit(0); });
}

}  // namespace pelmarix::qt
