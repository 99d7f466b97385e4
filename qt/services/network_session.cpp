#include "qt/services/network_session.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QEvent>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QThread>
#include <QUrl>
#include <deque>
#include <mutex>
#include <string>
#include <utility>

#include "qt/services/text_conversion.h"

namespace pelmarix::qt {
namespace {

constexpr std::chrono::milliseconds patienceAtTheEnd(250);

/// The media type without parameters, in the server's own letters.
std::optional<std::string> mediaType(const QNetworkReply& reply) {
  const QByteArray type = reply.rawHeader("Content-Type").split(';').front().trimmed();
  if (type.isEmpty()) return std::nullopt;
  return type.toStdString();
}

/// Qt counts the statuses from 400 on as errors, but they are answers like all others.
bool isAnswer(QNetworkReply::NetworkError error, int status) {
  return error == QNetworkReply::NoError || (status >= 400 && error >= QNetworkReply::ContentAccessDenied);
}

}  // namespace

/// One request under way. Lives and dies with its reply.
class NetworkSession::Transfer final : public QObject {
 public:
  Transfer(QNetworkReply& reply, int& lookUps, platform::URLSessionCompletionHandler completionHandler)
      : QObject(&reply), reply_(reply), lookUps_(lookUps), completionHandler_(std::move(completionHandler)) {
    connect(&reply, &QNetworkReply::readyRead, this, &Transfer::read);
    connect(&reply, &QNetworkReply::finished, this, &Transfer::finish);
  }

 private:
  void read() {
    const QByteArray bytes = reply_.readAll();
    if (body_.size() + static_cast<std::size_t>(bytes.size()) > maximumBodySize) {
      isTooLarge_ = true;
      reply_.abort();  // finishes the reply
      return;
    }
    body_.append(bytes.constData(), static_cast<std::size_t>(bytes.size()));
  }

  void finish() {
    const int status = reply_.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    std::shared_ptr<const platform::URLResponse> response;
    if (status != 0) response = std::make_shared<platform::HTTPURLResponse>(status, mediaType(reply_));
    // Without an answer the time may have run out during the look-up, which goes on then.
    if (response || reply_.error() != QNetworkReply::OperationCanceledError) --lookUps_;

    if (isTooLarge_) {
      completionHandler_(std::nullopt, std::move(response), "The answer is too large.");
    } else if (!isAnswer(reply_.error(), status)) {
      completionHandler_(std::nullopt, std::move(response), toUtf8(reply_.errorString()));
    } else {
      completionHandler_(std::move(body_), std::move(response), std::nullopt);
    }
    reply_.deleteLater();
  }

  QNetworkReply& reply_;
  int& lookUps_;
  platform::URLSessionCompletionHandler completionHandler_;
  std::string body_;
  bool isTooLarge_ = false;
};

/// Starts the requests, on the thread that it lives on.
class NetworkSession::Worker final : public QObject {
 public:
  struct Request {
    platform::URL url;
    platform::URLSessionCompletionHandler completionHandler;
  };

  explicit Worker(std::chrono::milliseconds timeout) : timeout_(timeout) {}

  /// To be called from any thread.
  void submit(Request request) {
    const std::lock_guard lock(mutex_);
    submitted_.push_back(std::move(request));
    QCoreApplication::postEvent(this, new QEvent(QEvent::User));
  }

  /// Drops all requests that have been started. To be called on the worker's thread, as the last thing there.
  void drop() {
    const std::lock_guard lock(mutex_);
    manager_.reset();
  }

  /// To be called when the thread has ended. Under the lock all that was done there is seen.
  bool mayLookUp() {
    const std::lock_guard lock(mutex_);
    return lookUps_ != 0;
  }

 private:
  void customEvent(QEvent* /*event*/) override { start(nextRequest()); }

  Request nextRequest() {
    const std::lock_guard lock(mutex_);
    Request request = std::move(submitted_.front());
    submitted_.pop_front();
    return request;
  }

  void start(Request request) {
    if (!manager_) manager_ = std::make_unique<QNetworkAccessManager>();
    QNetworkRequest get(QUrl::fromEncoded(QByteArray::fromStdString(request.url.absoluteString())));
    get.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::NoLessSafeRedirectPolicy);
    get.setMaximumRedirectsAllowed(maximumRedirects);
    // HTTP/1.1, which every server speaks: for one small file the newer one has nothing to offer.
    get.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
    get.setTransferTimeout(static_cast<int>(timeout_.count()));
    ++lookUps_;
    // Owned by its parent, the reply.
    new Transfer(*manager_->get(get), lookUps_, std::move(request.completionHandler));
  }

  const std::chrono::milliseconds timeout_;
  /// Made on the thread, with the first request: it takes a while.
  std::unique_ptr<QNetworkAccessManager> manager_;
  /// Requests for which a look-up may be running.
  int lookUps_ = 0;

  std::mutex mutex_;
  std::deque<Request> submitted_;
};

class NetworkSession::Thread final : public QThread {
 public:
  explicit Thread(Worker& worker) : worker_(worker) {
    setObjectName(QStringLiteral("network"));
    worker.moveToThread(this);
  }

 private:
  void run() override {
    exec();
    worker_.drop();
  }

  Worker& worker_;
};

class NetworkSession::Task final : public platform::URLSessionDataTask {
 public:
  Task(NetworkSession& session, Worker::Request request) : session_(session), request_(std::move(request)) {}

  void resume() override {
    if (!request_.completionHandler) return;  // started before
    session_.thread_->start();
    session_.worker_->submit({request_.url, std::exchange(request_.completionHandler, nullptr)});
  }

 private:
  NetworkSession& session_;
  Worker::Request request_;
};

NetworkSession::NetworkSession(std::chrono::milliseconds timeout)
    : worker_(std::make_unique<Worker>(timeout)), thread_(std::make_unique<Thread>(*worker_)) {}

NetworkSession::~NetworkSession() {
  thread_->quit();
  thread_->wait();
}

std::unique_ptr<platform::URLSessionDataTask> NetworkSession::dataTaskWithURLCompletionHandler(
    const platform::URL& url, platform::URLSessionCompletionHandler completionHandler) {
  return std::make_unique<Task>(*this, Worker::Request{url, std::move(completionHandler)});
}

bool NetworkSession::shutDown() {
  thread_->quit();
  return thread_->wait(QDeadlineTimer(patienceAtTheEnd)) && !worker_->mayLookUp();
}

}  // namespace pelmarix::qt
