// pelmarix-open: opens the folders that it is given, which together stand for one Mac's "/".

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "posix/companion.h"
#include "posix/volume.h"
#include "qt/services/text_conversion.h"
#include "qt/widgets/quiet_application.h"
#include "qt/widgets/sentence_box.h"
#include "qt/widgets/visible_text.h"

namespace {

// File managers and menus start it where nobody reads what is written: there a window tells it.
int complain(int argc, char** argv, const std::string& sentence) {
  const QString text = pelmarix::qt::visibleInOneLine(pelmarix::qt::toQString(sentence));
  std::fprintf(stderr, "pelmarix-open: %s\n", pelmarix::qt::toUtf8(text).c_str());
  const bool hasDisplay =
      !qEnvironmentVariableIsEmpty("DISPLAY") || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
  if (hasDisplay && !pelmarix::posix::isStartedFromTerminal()) {
    int nameAlone = std::min(argc, 1);  // Qt would take options
    const auto application = pelmarix::qt::makeApplication(nameAlone, argv);
    pelmarix::qt::SentenceBox(nullptr, sentence).exec();
  }
  return EXIT_FAILURE;
}

}  // namespace

int main(int argc, char** argv) {
  std::string volume;  // a menu's entry starts it without folders
  if (argc > 1) {
    const auto value = pelmarix::posix::Volume::valueForFolders({argv + 1, argv + argc});
    if (!value) return complain(argc, argv, value.error().sentence);
    volume = *value;
  }
  const std::error_code failure = pelmarix::posix::becomeCompanion("pelmarix", volume);
  return complain(argc, argv, "Pelmarix can't be started: " + failure.message() + ".");
}
