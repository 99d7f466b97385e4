#include "qt/services/network_session.h"

#include <QByteArray>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <string>
#include <utility>

#include "qt/services/text_conversion.h"

namespace pelmarix::qt {
namespace {

constexpr int maximumRedirects = 5;
constexpr std::chrono::milliseconds shutDownTimeout(250);

// The media type without parameters, in the server's own letters.
std::optional<std::string> mediaType(const QNetworkReply& reply) {
  const QByteArray type = reply.rawHeader("Content-Type").split(';').front().trimmed();
  if (type.isEmpty()) return std::nullopt;
  return type.toStdString();
}

// Qt counts the statuses from 400 on as errors, but they are answers like all others.
bool isAnswer(QNetworkReply::NetworkError error, int status) {
  return error == QNetworkReply::NoError || (status >= 400 && error >= QNetworkReply::ContentAccessDenied);
}

}  // namespace

// Lives and dies with its reply.
class NetworkSession::PendingRequest final : public QObject {
 public:
  PendingRequest(QNetworkReply& reply, int& pendingLookUps,
                 platform::URLSessionCompletionHandler completionHandler)
      : QObject(&reply),
        reply_(reply),
        pendingLookUps_(pendingLookUps),
        completionHandler_(std::move(completionHandler)) {
    connect(&reply, &QNetworkReply::readyRead, this, &PendingRequest::read);
    connect(&reply, &QNetworkReply::finished, this, &PendingRequest::finish);
  }

 private:
  void read() {
    const QByteArray bytes = reply_.readAll();
    body_.append(bytes.constData(), static_cast<std::size_t>(bytes.size()));
    if (body_.size() > maximumBodySize) reply_.abort();  // finishes the reply, with an error
  }

  void finish() {
    const int status = reply_.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    std::shared_ptr<const platform::URLResponse> response;
    if (status != 0) response = std::make_shared<platform::HTTPURLResponse>(status, mediaType(reply_));
    // A time-out without an answer may have come during the look-up, which goes on then.
    if (response || reply_.error() != QNetworkReply::OperationCanceledError) --pendingLookUps_;

    if (isAnswer(reply_.error(), status))
      completionHandler_(std::move(body_), std::move(response), std::nullopt);
    else
      completionHandler_(std::nullopt, std::move(response), toUtf8(reply_.errorString()));
    reply_.deleteLater();
  }

  QNetworkReply& reply_;
  int& pendingLookUps_;
  platform::URLSessionCompletionHandler completionHandler_;
  std::string body_;
};

// Starts the requests. Lives on the session's thread.
class NetworkSession::Worker final : public QObject {
 public:
  explicit Worker(std::chrono::milliseconds timeout) : timeout_(timeout) {}

  void start(const platform::URL& url, platform::URLSessionCompletionHandler completionHandler) {
    if (!manager_) manager_ = std::make_unique<QNetworkAccessManager>();
    QNetworkRequest get(toQUrl(url));
    get.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::NoLessSafeRedirectPolicy);
    get.setMaximumRedirectsAllowed(maximumRedirects);
    // HTTP/1.1, which every server speaks: for one small file the newer one has nothing to offer.
    get.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
    get.setTransferTimeout(static_cast<int>(timeout_.count()));
    ++pendingLookUps_;
    // Owned by its parent, the reply.
    new PendingRequest(*manager_->get(get), pendingLookUps_, std::move(completionHandler));
  }

  void dropRequests() { manager_.reset(); }

  // To be asked when the thread has ended.
  bool hasPendingLookUps() const { return pendingLookUps_ != 0; }

 private:
  const std::chrono::milliseconds timeout_;
  // Made on the thread, with the first request: it takes a while.
  std::unique_ptr<QNetworkAccessManager> manager_;
  // Requests whose name may still be looked up.
  int pendingLookUps_ = 0;
};

class NetworkSession::Task final : public platform::URLSessionDataTask {
 public:
  Task(NetworkSession& session, platform::URL url, platform::URLSessionCompletionHandler completionHandler)
      : session_(session), url_(std::move(url)), completionHandler_(std::move(completionHandler)) {}

  void resume() override {
    if (!completionHandler_) return;  // started before
    session_.thread_.start();
    Worker* const worker = session_.worker_.get();
    QMetaObject::invokeMethod(
        worker,
        [worker, url = url_, handler = std::exchange(completionHandler_, nullptr)]() mutable {
          worker->start(url, std::move(handler));
        },
        Qt::QueuedConnection);
  }

 private:
  NetworkSession& session_;
  platform::URL url_;
  platform::URLSessionCompletionHandler completionHandler_;
};

NetworkSession::NetworkSession(std::chrono::milliseconds timeout)
    : worker_(std::make_unique<Worker>(timeout)) {
  thread_.setObjectName(QStringLiteral("network"));
  worker_->moveToThread(&thread_);
  // Directly: the requests belong to the thread, and so does their end.
  QObject::connect(&thread_, &QThread::finished, worker_.get(), &Worker::dropRequests, Qt::DirectConnection);
}

NetworkSession::~NetworkSession() {
  thread_.quit();
  thread_.wait();
}

std::unique_ptr<platform::URLSessionDataTask> NetworkSession::dataTaskWithURLCompletionHandler(
    const platform::URL& url, platform::URLSessionCompletionHandler completionHandler) {
  return std::make_unique<Task>(*this, url, std::move(completionHandler));
}

NetworkSession::ShutDown NetworkSession::shutDown() {
  thread_.quit();
  const bool hasEnded = thread_.wait(QDeadlineTimer(shutDownTimeout));
  return hasEnded && !worker_->hasPendingLookUps() ? ShutDown::complete : ShutDown::lookUpPending;
}

}  // namespace pelmarix::qt
