// Requests over the network, on a thread of their own.
#pragma once

#include <QThread>
#include <chrono>
#include <cstddef>
#include <memory>

#include "platform/url_session.h"

namespace pelmarix::qt {

/// A larger body is an error, counted after decompression. An update list has a few kilobytes; the bound only
/// keeps a mistaken or hostile server from filling the memory.
inline constexpr std::size_t maximumBodySize = std::size_t{16} << 20U;

/// The thread starts with the first request. Redirects are followed five times at most, and none from a
/// protected address to an unprotected one. Cookies last as long as the session, nothing is cached.
class NetworkSession final : public platform::URLSession {
 public:
  /// `timeout` is how long a request may go without receiving anything before it ends with an error.
  explicit NetworkSession(std::chrono::milliseconds timeout = std::chrono::seconds(60));

  /// Drops all requests, and waits for whatever shutDown doesn't wait for.
  ~NetworkSession() override;

  std::unique_ptr<platform::URLSessionDataTask> dataTaskWithURLCompletionHandler(
      const platform::URL& url, platform::URLSessionCompletionHandler completionHandler) override;

  enum class ShutDown {
    complete,       ///< no handler is called any more
    lookUpPending,  ///< the system may still be looking up the name of a host or of a proxy
  };

  /// Drops all requests; nothing is to be started afterwards. Takes a quarter of a second at most.
  ///
  /// Nothing can call a pending look-up off, and it can take half a minute: destroying the session or the
  /// QCoreApplication would wait for it. The process must be ended by std::_Exit then.
  [[nodiscard]] ShutDown shutDown();

 private:
  class PendingRequest;
  class Task;
  class Worker;

  // Lives on the thread.
  std::unique_ptr<Worker> worker_;
  QThread thread_;
};

}  // namespace pelmarix::qt
