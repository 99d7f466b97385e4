// Lets a test lead the program. What becomes visible is told on standard output, a line each:
//
//   window                 the main window has been painted
//   alert TEXT             a message box is up
//   menu TITLE, CHECKED    an item of the Help menu, when asked for
//   work MS MS             how long the main thread has worked on end at most since that was asked for last:
//   in
//                          milliseconds of the processor and on the clock
//
// What the test wants is read from standard input, a line each:
//
//   press TITLE            presses the button of the message box that is up
//   menu                   asks for the Help menu's items
//   work                   asks for the longest work
//   close                  closes the windows; the end of the input does the same
//
// PELMARIX_TEST_AUTHORITY names the only certificate authority that is trusted.
#include <time.h>
#include <unistd.h>

#include <QAction>
#include <QApplication>
#include <QEvent>
#include <QMainWindow>
#include <QMenuBar>
#include <QMessageBox>
#include <QNetworkProxy>
#include <QPushButton>
#include <QSocketNotifier>
#include <QSslCertificate>
#include <QSslConfiguration>
#include <QTimer>
#include <algorithm>
#include <string>

namespace {

void tell(const std::string& line) {
  const std::string whole = line + "\n";
  if (write(STDOUT_FILENO, whole.data(), whole.size()) < 0) std::abort();
}

class RemoteControl final : public QObject {
 public:
  explicit RemoteControl(QObject* parent) : QObject(parent), input_(STDIN_FILENO, QSocketNotifier::Read) {
    parent->installEventFilter(this);
    connect(&input_, &QSocketNotifier::activated, this, [this] { read(); });
    beat_.callOnTimeout(this, [this] { noteWork(); });
    beat_.start(5);
  }

 private:
  bool eventFilter(QObject* object, QEvent* event) override {
    if (event->type() == QEvent::Paint && !windowWasTold_ && qobject_cast<QMainWindow*>(object) != nullptr) {
      windowWasTold_ = true;
      tell("window");
    }
    if (auto* box = qobject_cast<QMessageBox*>(object); box != nullptr && event->type() == QEvent::Show)
      tell("alert " + QString(box->text() + box->informativeText()).replace('\n', ' ').toStdString());
    return false;
  }

  void read() {
    char bytes[256];
    const ssize_t size = ::read(STDIN_FILENO, bytes, sizeof bytes);
    if (size <= 0) {
      input_.setEnabled(false);
      QApplication::closeAllWindows();
      return;
    }
    pending_.append(bytes, static_cast<std::size_t>(size));
    for (std::size_t end; (end = pending_.find('\n')) != std::string::npos;) {
      const std::string line = pending_.substr(0, end);
      pending_.erase(0, end + 1);
      perform(line);
    }
  }

  static double milliseconds(clockid_t clock) {
    timespec time{};
    clock_gettime(clock, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
  }
  void noteWork() {
    const double work = milliseconds(CLOCK_THREAD_CPUTIME_ID);
    const double clock = milliseconds(CLOCK_MONOTONIC);
    longestWork_ = std::max(longestWork_, work - lastWork_);
    longestClock_ = std::max(longestClock_, clock - lastClock_);
    lastWork_ = work;
    lastClock_ = clock;
  }

  void perform(const std::string& line) {
    if (line == "close") QApplication::closeAllWindows();
    if (line == "work") {
      noteWork();
      tell("work " + std::to_string(longestWork_) + " " + std::to_string(longestClock_));
      longestWork_ = longestClock_ = 0;
    }
    if (line == "menu") tellHelpMenu();
    if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget()); box != nullptr)
      for (QAbstractButton* button : box->buttons())
        if ("press " + button->text().toStdString() == line) button->click();
  }

  static void tellHelpMenu() {
    for (const QWidget* widget : QApplication::topLevelWidgets())
      if (const auto* window = qobject_cast<const QMainWindow*>(widget))
        for (const QAction* item : window->menuBar()->actions().last()->menu()->actions())
          if (!item->isSeparator())
            tell("menu " + item->text().remove('&').toStdString() + ", " +
                 (item->isChecked() ? "on" : "off"));
  }

  QSocketNotifier input_;
  std::string pending_;
  bool windowWasTold_ = false;
  QTimer beat_;
  double lastWork_ = milliseconds(CLOCK_THREAD_CPUTIME_ID), longestWork_ = 0;
  double lastClock_ = milliseconds(CLOCK_MONOTONIC), longestClock_ = 0;
};

void lead() {
  QNetworkProxy::setApplicationProxy(QNetworkProxy::NoProxy);
  QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
  configuration.setCaCertificates(QSslCertificate::fromPath(qEnvironmentVariable("PELMARIX_TEST_AUTHORITY")));
  QSslConfiguration::setDefaultConfiguration(configuration);
  new RemoteControl(QCoreApplication::instance());
}

}  // namespace

Q_COREAPP_STARTUP_FUNCTION(lead)
