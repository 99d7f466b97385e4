// Requests over the network, on a thread of their own.
#pragma once

#include <QThread>
#include <chrono>
#include <memory>

#include "platform/url_session.h"

namespace pelmarix::qt {

/// The thread starts with the first request. Redirects are followed five times at most. Only protected
/// addresses (https) are asked, whoever names them. Nothing is cached and nothing kept from one request to
/// the next.
///
/// Not by QNetworkAccessManager: it has no bound for what comes before the body and between its chunks, and
/// takes a compressed body that was cut for a whole one. A list of a few kilobytes is asked for as it is.
class NetworkSession final : public platform::URLSession {
 public:
  /// A request ends with an error when it has received nothing for `timeout`, and when it takes longer than
  /// `timeLimit` in all.
  explicit NetworkSession(std::chrono::milliseconds timeout = std::chrono::seconds(60),
                          std::chrono::milliseconds timeLimit = std::chrono::minutes(2));

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
  class Request;
  class Task;
  class Worker;

  // Lives on the thread.
  std::unique_ptr<Worker> worker_;
  QThread thread_;
};

}  // namespace pelmarix::qt
