#include "qt/services/network_session.h"

#include <QSslSocket>
#include <QTimer>
#include <QUrl>
#include <string>
#include <utility>

#include "qt/services/http_answer.h"
#include "qt/services/text_conversion.h"

namespace pelmarix::qt {
namespace {

constexpr int maximumRedirects = 5;
constexpr std::uint16_t usualPort = 443;
constexpr std::chrono::milliseconds shutDownTimeout(250);

// The media type without parameters, in the server's own letters.
std::optional<std::string> mediaType(const HttpAnswer& answer) {
  const std::string header = answer.header("content-type");
  const QString type = toQString(header).section(QLatin1Char(';'), 0, 0).trimmed();
  if (type.isEmpty()) return std::nullopt;
  return toUtf8(type);
}

bool isRedirect(const HttpAnswer& answer) {
  const int status = answer.status();
  const bool namesAnother = (status >= 301 && status <= 303) || status == 307 || status == 308;
  return namesAnother && !answer.header("location").empty();
}

QByteArray requestFor(QUrl url) {
  url.setUserInfo(QString());
  QByteArray target = url.toEncoded(QUrl::RemoveScheme | QUrl::RemoveAuthority | QUrl::RemoveFragment);
  if (!target.startsWith('/')) target.prepend('/');
  return "GET " + target + " HTTP/1.1\r\nHost: " + url.authority(QUrl::FullyEncoded).toLatin1() +
         "\r\nAccept-Encoding: identity\r\nConnection: close\r\nUser-Agent: Pelmarix\r\n\r\n";
}

}  // namespace

// One request, redirects included. Lives on the session's thread and deletes itself when it has ended.
class NetworkSession::Request final : public QObject {
 public:
  Request(QObject* parent, std::chrono::milliseconds timeout, std::chrono::milliseconds timeLimit,
          int& pendingLookUps, platform::URLSessionCompletionHandler completionHandler)
      : QObject(parent), pendingLookUps_(pendingLookUps), completionHandler_(std::move(completionHandler)) {
    idleTimer_.setInterval(timeout);
    idleTimer_.callOnTimeout(this, [this] { fail("Nothing came for too long."); });
    QTimer::singleShot(timeLimit, this, [this] { fail("The answer took too long."); });
  }

  void ask(const QUrl& url) {
    url_ = url;
    answer_ = HttpAnswer();
    idleTimer_.start();
    // The one before may be calling just now.
    if (socket_ != nullptr) {
      socket_->disconnect(this);
      socket_->deleteLater();
    }
    socket_ = new QSslSocket(this);
    connect(socket_, &QSslSocket::hostFound, this, &Request::endLookUp);
    connect(socket_, &QSslSocket::connected, this, &Request::endLookUp);  // a proxy may have done it
    connect(socket_, &QSslSocket::encrypted, this, [this] { socket_->write(requestFor(url_)); });
    connect(socket_, &QSslSocket::readyRead, this, &Request::read);
    connect(socket_, &QSslSocket::errorOccurred, this, &Request::endConnection);
    lookUpIsPending_ = true;
    ++pendingLookUps_;
    socket_->setProtocolTag(QStringLiteral("https"));  // for the choice of a proxy
    socket_->connectToHostEncrypted(url.host(QUrl::FullyEncoded), static_cast<quint16>(url.port(usualPort)));
  }

 private:
  void endLookUp() {
    if (std::exchange(lookUpIsPending_, false)) --pendingLookUps_;
  }

  void read() {
    if (hasEnded_) return;
    idleTimer_.start();
    const QByteArray bytes = socket_->readAll();
    answer_.add({bytes.constData(), static_cast<std::size_t>(bytes.size())});
    if (answer_.status() != 0 && isRedirect(answer_))
      follow();
    else
      finishIfThereIsAnAnswer();
  }

  // An error, or the end of the connection, which Qt counts among them.
  void endConnection(QAbstractSocket::SocketError error) {
    endLookUp();
    if (hasEnded_) return;
    if (error != QAbstractSocket::RemoteHostClosedError || !socket_->isEncrypted())
      return fail(toUtf8(socket_->errorString()));
    const QSslSocket* const ended = socket_;
    if (socket_->bytesAvailable() != 0) read();
    if (hasEnded_ || socket_ != ended) return;  // it was a redirect
    answer_.end();
    finishIfThereIsAnAnswer();
  }

  void follow() {
    // Not strictly: there are servers that don't encode blanks and the like.
    const QUrl next = url_.resolved(QUrl(toQString(answer_.header("location"))));
    if (!next.isValid() || next.scheme() != QLatin1String("https")) return fail("No such redirect.");
    if (++redirects_ > maximumRedirects) return fail("There are too many redirects.");
    ask(next);
  }

  void finishIfThereIsAnAnswer() {
    if (answer_.isBroken()) return fail("The answer is broken.");
    if (!answer_.isComplete()) return;
    std::optional<std::string> body = answer_.takeBody();
    if (!body) return fail("The body is compressed.");
    finish(std::move(body), std::nullopt);
  }

  void fail(std::string error) { finish(std::nullopt, std::move(error)); }

  void finish(std::optional<std::string> body, std::optional<std::string> error) {
    if (std::exchange(hasEnded_, true)) return;
    std::shared_ptr<const platform::URLResponse> response;
    if (answer_.status() != 0)
      response = std::make_shared<platform::HTTPURLResponse>(answer_.status(), mediaType(answer_));
    completionHandler_(std::move(body), std::move(response), std::move(error));
    deleteLater();
  }

  int& pendingLookUps_;
  platform::URLSessionCompletionHandler completionHandler_;
  QTimer idleTimer_;
  QUrl url_;
  QSslSocket* socket_ = nullptr;
  HttpAnswer answer_;
  int redirects_ = 0;
  // The system may be looking up the host's name; nothing can call that off.
  bool lookUpIsPending_ = false;
  bool hasEnded_ = false;
};

// Starts the requests. Lives on the session's thread.
class NetworkSession::Worker final : public QObject {
 public:
  Worker(std::chrono::milliseconds timeout, std::chrono::milliseconds timeLimit)
      : timeout_(timeout), timeLimit_(timeLimit) {}

  void start(const platform::URL& url, platform::URLSessionCompletionHandler completionHandler) {
    (new Request(this, timeout_, timeLimit_, pendingLookUps_, std::move(completionHandler)))
        ->ask(toQUrl(url));
  }

  void dropRequests() { qDeleteAll(children()); }

  // To be asked when the thread has ended.
  bool hasPendingLookUps() const { return pendingLookUps_ != 0; }

 private:
  const std::chrono::milliseconds timeout_;
  const std::chrono::milliseconds timeLimit_;
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

NetworkSession::NetworkSession(std::chrono::milliseconds timeout, std::chrono::milliseconds timeLimit)
    : worker_(std::make_unique<Worker>(timeout, timeLimit)) {
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
