// Requests over the network, on a thread of their own.
#pragma once

#include <chrono>
#include <cstddef>
#include <memory>

#include "platform/url_session.h"

namespace pelmarix::qt {

/// A larger body is an error, counted after decompression. An update list has a few kilobytes; the bound only
/// keeps a mistaken or hostile server from filling the memory.
inline constexpr std::size_t maximumBodySize = std::size_t{16} << 20U;

/// How many redirects a request follows. None leads from a protected address to an unprotected one.
inline constexpr int maximumRedirects = 5;

/// The thread starts with the first request. Cookies last as long as the session, nothing is cached.
class NetworkSession final : public platform::URLSession {
 public:
  /// `timeout` is how long a request may go without receiving anything before it ends with an error.
  explicit NetworkSession(std::chrono::milliseconds timeout = std::chrono::seconds(60));

  /// Shuts down, and waits for whatever shutDown didn't wait for.
  ~NetworkSession() override;

  std::unique_ptr<platform::URLSessionDataTask> dataTaskWithURLCompletionHandler(
      const platform::URL& url, platform::URLSessionCompletionHandler completionHandler) override;

  /// Drops all requests: once this has returned true no handler is called any more. Takes a quarter of a
  /// second at most.
  ///
  /// False when the system may still be busy with the name of a host or of a proxy. Nothing can call such a
  /// look-up off, and it can take half a minute: destroying the session or the QCoreApplication would wait
  /// for it. The process must be ended by std::_Exit then.
  [[nodiscard]] bool shutDown();

 private:
  class Task;
  class Thread;
  class Transfer;
  class Worker;

  /// Lives on the thread.
  std::unique_ptr<Worker> worker_;
  std::unique_ptr<Thread> thread_;
};

}  // namespace pelmarix::qt
