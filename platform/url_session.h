// One request over the network.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "platform/url.h"

namespace pelmarix::platform {

class URLResponse {
 public:
  virtual ~URLResponse() = default;
};

class HTTPURLResponse final : public URLResponse {
 public:
  HTTPURLResponse(int status, std::optional<std::string> type)
      : statusCode_(status), mimeType_(std::move(type)) {}
  int statusCode() const { return statusCode_; }
  /// The media type without parameters, in the letters that the server sent; nothing when it sent none.
  const std::optional<std::string>& mimeType() const { return mimeType_; }

 private:
  int statusCode_;
  std::optional<std::string> mimeType_;
};

/// Called once, on a background thread of the session; not at all when the session ends before the answer is
/// there. Whatever status an HTTP server answers with is an answer. An error tells that there is none, or not
/// the whole of it: then there is no body, and the response is null if not even its head came. An answer
/// without content has an empty body.
using URLSessionCompletionHandler =
    std::function<void(std::optional<std::string> body, std::shared_ptr<const URLResponse> response,
                       std::optional<std::string> error)>;

/// A request that waits for its start. Dropping it before drops the request; once started it needs no holder,
/// and starting it again does nothing.
class URLSessionDataTask {
 public:
  virtual ~URLSessionDataTask() = default;
  virtual void resume() = 0;
};

class URLSession {
 public:
  static URLSession& sharedSession();

  virtual ~URLSession() = default;
  /// One plain GET with the session's ordinary time-outs, cache policy and headers.
  virtual std::unique_ptr<URLSessionDataTask> dataTaskWithURLCompletionHandler(
      const URL& url, URLSessionCompletionHandler completionHandler) = 0;
};

}  // namespace pelmarix::platform
