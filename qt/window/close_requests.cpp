#include "qt/window/close_requests.h"

#include <xcb/xcb.h>

#include <QApplication>
#include <cstdlib>
#include <memory>
#include <string_view>

namespace pelmarix::qt {
namespace {

std::uint32_t atomNamed(xcb_connection_t* connection, std::string_view name) {
  const auto request = xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.data());
  const std::unique_ptr<xcb_intern_atom_reply_t, decltype(&std::free)> reply(
      xcb_intern_atom_reply(connection, request, nullptr), std::free);
  return reply ? reply->atom : 0;
}

}  // namespace

CloseRequests::CloseRequests(QWidget& window) : window_(window) {
  const auto* display = qApp->nativeInterface<QNativeInterface::QX11Application>();
  // A display in memory may be said to be one of X, too, but then there is no connection.
  xcb_connection_t* const connection = display == nullptr ? nullptr : display->connection();
  if (connection == nullptr) return;
  protocols_ = atomNamed(connection, "WM_PROTOCOLS");
  deleteWindow_ = atomNamed(connection, "WM_DELETE_WINDOW");
  qApp->installNativeEventFilter(this);
}

bool CloseRequests::nativeEventFilter(const QByteArray& eventType, void* message, qintptr* /*result*/) {
  if (eventType != "xcb_generic_event_t" || QApplication::activeModalWidget() == nullptr) return false;
  constexpr unsigned sentByAnotherClient = 0x80;
  const auto* event = static_cast<const xcb_client_message_event_t*>(message);
  if ((event->response_type & ~sentByAnotherClient) != XCB_CLIENT_MESSAGE) return false;
  if (event->window != window_.effectiveWinId() || event->type != protocols_ ||
      event->data.data32[0] != deleteWindow_)
    return false;
  QMetaObject::invokeMethod(&window_, &QWidget::close, Qt::QueuedConnection);
  return true;
}

}  // namespace pelmarix::qt
