#include "qt/widgets/announcer.h"

#include <QAccessibleWidget>

namespace pelmarix::qt {
namespace {

QAccessibleInterface* notification(const QString& /*className*/, QObject* object) {
  auto* const announcer = qobject_cast<Announcer*>(object);
  return announcer == nullptr ? nullptr : new QAccessibleWidget(announcer, QAccessible::Notification);
}

}  // namespace

Announcer::Announcer(QWidget* parent) : QWidget(parent) {
  static const bool isInstalled = (QAccessible::installFactory(notification), true);
  static_cast<void>(isInstalled);
  hide();
}

void Announcer::announce(const QString& text) {
  setAccessibleName(text);
  QAccessibleEvent event(this, QAccessible::ObjectShow);
  QAccessible::updateAccessibility(&event);
}

}  // namespace pelmarix::qt
