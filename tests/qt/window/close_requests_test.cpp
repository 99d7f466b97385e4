#include "qt/window/close_requests.h"

#include <gtest/gtest.h>
#include <xcb/xcb.h>

#include <QApplication>
#include <QDialog>

namespace pelmarix::test {
namespace {

/// Events as X11 brings them. On a display in memory the names of the protocol have no numbers: both are 0.
class CloseRequests : public testing::Test {
 protected:
  CloseRequests() {
    request.response_type = XCB_CLIENT_MESSAGE;
    request.format = 32;
  }

  /// Whether the filter takes it, and the window closes.
  bool closes(const QByteArray& type = "xcb_generic_event_t") {
    dialog.hide();
    window.show();
    request.window = static_cast<xcb_window_t>(window.effectiveWinId() + (isAnothers ? 1 : 0));
    dialog.setVisible(isBlocked);
    const bool isTaken = filter.nativeEventFilter(type, &request, nullptr);
    QApplication::processEvents();
    EXPECT_EQ(window.isVisible(), !isTaken);
    return isTaken;
  }

  QWidget window;
  QDialog dialog{&window};
  qt::CloseRequests filter{window};
  xcb_client_message_event_t request{};
  bool isBlocked = true;
  bool isAnothers = false;
};

TEST_F(CloseRequests, CloseAWindowThatADialogBlocks) {
  dialog.setModal(true);
  EXPECT_TRUE(closes());
  request.response_type = XCB_CLIENT_MESSAGE | 0x80;
  EXPECT_TRUE(closes()) << "sent by another client";
}

TEST_F(CloseRequests, AreTheToolkitsWhereNothingBlocksTheWindow) {
  isBlocked = false;
  EXPECT_FALSE(closes());
  isBlocked = true;
  dialog.setModal(false);
  EXPECT_FALSE(closes());
}

TEST_F(CloseRequests, LeaveEverythingElseToTheToolkit) {
  dialog.setModal(true);
  EXPECT_FALSE(closes("windows_generic_MSG"));
  const xcb_client_message_event_t usual = request;
  request.response_type = XCB_PROPERTY_NOTIFY;
  EXPECT_FALSE(closes()) << "no message";
  request = usual;
  isAnothers = true;
  EXPECT_FALSE(closes()) << "another window's";
  isAnothers = false;
  request = usual;
  request.type = 1;
  EXPECT_FALSE(closes()) << "no message of that protocol";
  request = usual;
  request.data.data32[0] = 1;
  EXPECT_FALSE(closes()) << "it doesn't ask for closing";
  request = usual;
  request.data.data32[1] = 1;  // when
  EXPECT_TRUE(closes());
}

}  // namespace
}  // namespace pelmarix::test
