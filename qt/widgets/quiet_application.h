// The toolkit's application.
#pragma once

#include <QApplication>
#include <memory>

namespace pelmarix::qt {

/// It has the program's icon, nothing to say on the terminal, and leaves no file behind. `argc` has to
/// outlive it.
std::unique_ptr<QApplication> makeApplication(int& argc, char** argv);

}  // namespace pelmarix::qt
