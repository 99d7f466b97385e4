// What the program says of itself.
#pragma once

#include <QWidget>

#include "app/app_delegate.h"

namespace pelmarix::qt {

/// Shows the box over `window`, whose icon it has. Its link opens the page that `delegate` has for support.
void showAbout(QWidget& window, AppDelegate& delegate);

}  // namespace pelmarix::qt
