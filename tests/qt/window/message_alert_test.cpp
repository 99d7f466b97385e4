#include "qt/window/message_alert.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <functional>
#include <memory>

namespace pelmarix::test {
namespace {

class MessageAlert : public testing::Test {
 protected:
  /// Runs the alert; `look` sees it on screen and has to end it.
  int run(const std::function<void(QMessageBox&)>& look) {
    QTimer::singleShot(0, [&] {
      auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
      ASSERT_NE(box, nullptr);
      look(*box);
    });
    return alert.runModal();
  }
  static QPushButton* button(const QMessageBox& box, const QString& text) {
    for (auto* candidate : box.findChildren<QPushButton*>())
      if (candidate->text() == text) return candidate;
    return nullptr;
  }

  bool isTerminating = false;
  qt::MainQueue mainQueue;
  qt::MessageAlert alert{nullptr, mainQueue, [this] { return isTerminating; }};
};

TEST_F(MessageAlert, ShowsItsTextsStyleAndButtons) {
  alert.setMessageText("An error occurred in your last action:");
  alert.setInformativeText("Couldn't read install history.");
  alert.setAlertStyle(platform::AlertStyle::critical);
  alert.addButtonWithTitle("OK");
  run([](QMessageBox& box) {
    EXPECT_EQ(box.text(), QStringLiteral("An error occurred in your last action:"));
    EXPECT_EQ(box.informativeText(), QStringLiteral("Couldn't read install history."));
    EXPECT_EQ(box.icon(), QMessageBox::Critical);
    EXPECT_TRUE(box.isModal());
    ASSERT_EQ(box.buttons().size(), 1);
    EXPECT_EQ(box.buttons().front()->text(), QStringLiteral("OK"));
    box.buttons().front()->click();
  });
}

TEST_F(MessageAlert, HasASignForWhatCannotBeSeen) {
  alert.setMessageText("To version \u202e2.0 of\u200f:");
  alert.setInformativeText("You have \u20671.0.\nDownload it?");
  alert.addButtonWithTitle("OK\u202e");
  run([](QMessageBox& box) {
    EXPECT_EQ(box.text(), QStringLiteral("To version \u21c42.0 of\u21c4:"));
    EXPECT_EQ(box.informativeText(), QStringLiteral("You have \u21c41.0.\nDownload it?"));
    EXPECT_EQ(box.buttons().front()->text(), QStringLiteral("OK\u21c4"));
    box.close();
  });
}

TEST_F(MessageAlert, HasAnIconForEachStyle) {
  alert.addButtonWithTitle("OK");
  for (const auto& expected : {std::pair{platform::AlertStyle::informational, QMessageBox::Information},
                               std::pair{platform::AlertStyle::critical, QMessageBox::Critical}}) {
    alert.setAlertStyle(expected.first);
    run([&](QMessageBox& box) {
      EXPECT_EQ(box.icon(), expected.second);
      box.close();
    });
  }
}

TEST_F(MessageAlert, ReturnsTheChosenButtonInTheOrderOfAdding) {
  alert.addButtonWithTitle("Ignore");
  alert.addButtonWithTitle("Download");
  EXPECT_EQ(run([](QMessageBox& box) { button(box, QStringLiteral("Ignore"))->click(); }), 1000);
  EXPECT_EQ(run([](QMessageBox& box) { button(box, QStringLiteral("Download"))->click(); }), 1001);
}

TEST_F(MessageAlert, TakesTheFirstButtonForReturnEscapeAndClosing) {
  alert.addButtonWithTitle("Ignore");
  alert.addButtonWithTitle("Download");
  EXPECT_EQ(run([](QMessageBox& box) { QTest::keyClick(&box, Qt::Key_Return); }), 1000);
  EXPECT_EQ(run([](QMessageBox& box) { QTest::keyClick(&box, Qt::Key_Escape); }), 1000);
  EXPECT_EQ(run([](QMessageBox& box) { box.close(); }), 1000);
}

TEST_F(MessageAlert, TakesNothingForMarkup) {
  const std::string text = "<b>not bold</b> <a href=\"https://example.com\">&amp;</a>";
  alert.setMessageText(text);
  alert.setInformativeText(text);
  alert.addButtonWithTitle("Save & close");
  run([&](QMessageBox& box) {
    int plainLabels = 0;
    for (const auto* label : box.findChildren<QLabel*>()) {
      if (label->text().toStdString() != text) continue;
      EXPECT_EQ(label->textFormat(), Qt::PlainText);
      ++plainLabels;
    }
    EXPECT_EQ(plainLabels, 2);
    EXPECT_NE(button(box, QStringLiteral("Save && close")), nullptr);
    box.close();
  });
}

TEST_F(MessageAlert, CutsATextThatNobodyReads) {
  const std::string cut = std::string(9'999, 'x') + "\u2026";
  for (const auto& [text, shown] : std::vector<std::pair<std::string, std::string>>{
           {std::string(10'000, 'x'), std::string(10'000, 'x')},
           {std::string(10'001, 'x'), cut},
           {std::string(1'000'000, 'x'), cut},
           {std::string(9'998, 'x') + "\U0001F4BE and more", std::string(9'998, 'x') + "\u2026"}}) {
    qt::MessageAlert longAlert(nullptr, mainQueue, [] { return false; });
    longAlert.setMessageText(text);
    longAlert.setInformativeText(text);
    QTimer::singleShot(0, [&shown = shown] {
      auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
      ASSERT_NE(box, nullptr);
      EXPECT_EQ(box->text().toStdString(), shown);
      EXPECT_EQ(box->informativeText().toStdString(), shown);
      box->close();
    });
    longAlert.runModal();
  }
}

TEST_F(MessageAlert, PrintsTheMessageBold) {
  alert.setMessageText("message");
  alert.setInformativeText("information");
  alert.addButtonWithTitle("OK");
  run([](QMessageBox& box) {
    for (const auto* label : box.findChildren<QLabel*>()) {
      const bool isMessage = label->text() == QStringLiteral("message");
      EXPECT_EQ(label->font().bold(), isMessage) << label->text().toStdString();
    }
    box.close();
  });
}

TEST_F(MessageAlert, PrintsAnInformativeTextThatIsTheMessageAgainInItsUsualLetters) {
  alert.setMessageText("message");
  alert.setInformativeText("message");
  alert.addButtonWithTitle("OK");
  run([](QMessageBox& box) {
    int boldLabels = 0;
    for (const auto* label : box.findChildren<QLabel*>()) boldLabels += label->font().bold() ? 1 : 0;
    EXPECT_EQ(boldLabels, 1);
    box.close();
  });
}

TEST_F(MessageAlert, HoldsUpTheMainQueueUntilItIsDismissed) {
  alert.addButtonWithTitle("OK");
  bool ran = false;
  run([&](QMessageBox& box) {
    mainQueue.dispatch([&] { ran = true; });
    QCoreApplication::sendPostedEvents();
    QCoreApplication::processEvents();
    EXPECT_FALSE(ran);
    box.buttons().front()->click();
  });
  EXPECT_FALSE(ran);
  QCoreApplication::sendPostedEvents();
  EXPECT_TRUE(ran);
}

TEST_F(MessageAlert, EndsWithItsParent) {
  auto parent = std::make_unique<QWidget>();
  qt::MessageAlert child(parent.get(), mainQueue, [] { return false; });
  child.addButtonWithTitle("Ignore");
  QTimer::singleShot(0, parent.get(), [&] { parent.reset(); });
  EXPECT_EQ(child.runModal(), 1000);
  EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
}

TEST_F(MessageAlert, EndsWithTheEventLoop) {
  alert.addButtonWithTitle("OK");
  QTimer::singleShot(0, qApp,
                     [this] { EXPECT_EQ(run([](QMessageBox& /*box*/) { QApplication::exit(5); }), 1000); });
  EXPECT_EQ(QApplication::exec(), 5);
}

TEST_F(MessageAlert, IsNotShownOnceTheProgramEnds) {
  alert.addButtonWithTitle("OK");
  isTerminating = true;
  EXPECT_EQ(alert.runModal(), 1000);
}

}  // namespace
}  // namespace pelmarix::test
