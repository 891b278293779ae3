#include "web/ui/kml_export.h"

#include <QHostAddress>
#include <QNetworkProxy>
#include <QNetworkRequest>
#include <QUrl>
#include <utility>

#include "core/file.h"
#include "core/helpers.h"
#include "core/ui/qt_desktop.h"
#include "web/form_encoder.h"
#include "web/ui/web_access.h"

namespace vel {
namespace {

constexpr const char* kConversion = "/tools/qz2ge/";
constexpr const char* kFormType = "application/x-www-form-urlencoded";
constexpr std::chrono::seconds kSilenceLimit{30};
constexpr qint64 kChunk = qint64{64} * 1024;
// What may wait in the network's buffer beside the answer itself.
constexpr qint64 kReadBuffer = 1 << 20;

bool isLoopback(const QString& host) {
  return host == QLatin1String("localhost") || QHostAddress(host).isLoopback();
}

// An error page is an answer like any other; a transfer that broke is not.
bool isAnswer(QNetworkReply::NetworkError error) {
  switch (error) {
    case QNetworkReply::NoError:
    case QNetworkReply::ContentAccessDenied:
    case QNetworkReply::ContentOperationNotPermittedError:
    case QNetworkReply::ContentNotFoundError:
    case QNetworkReply::AuthenticationRequiredError:
    case QNetworkReply::ContentReSendError:
    case QNetworkReply::ContentConflictError:
    case QNetworkReply::ContentGoneError:
    case QNetworkReply::UnknownContentError:
    case QNetworkReply::ProtocolInvalidOperationError:
    case QNetworkReply::InternalServerError:
    case QNetworkReply::OperationNotImplementedError:
    case QNetworkReply::ServiceUnavailableError:
    case QNetworkReply::UnknownServerError:
      return true;
    default:
      return false;
  }
}

Status writeWhole(const std::filesystem::path& file, std::string_view bytes) {
  Result<OutputFile> output = OutputFile::create(file);
  if (!output) return output.error();
  if (const Status written = output->write(bytes); !written) return written;
  return output->finish();
}

// Takes the target's place only when every byte is on the disk.
Status replaceWhole(const std::filesystem::path& target, std::string_view bytes) {
  std::filesystem::path part = target;
  part += ".part";
  Status done = writeWhole(part, bytes);
  if (done) done = replaceFile(part, target);
  // What is left of a failed attempt helps nobody; it may also never have been.
  if (!done) static_cast<void>(removeFile(part));
  return done;
}

}  // namespace

KmlExport::KmlExport(Desktop& desktop, WebAccess& web, std::filesystem::path target,
                     QObject* parent)
    : QObject(parent), desktop_(desktop), web_(web), target_(std::move(target)) {
  silence_.setSingleShot(true);
  silence_.setInterval(kSilenceLimit);
  connect(&silence_, &QTimer::timeout, this, &KmlExport::failOnSilence);
}

KmlExport::~KmlExport() {
  if (reply_ != nullptr) reply_->disconnect(this);
}

void KmlExport::setSilenceLimit(std::chrono::milliseconds limit) { silence_.setInterval(limit); }

void KmlExport::start(std::string_view rawText) {
  if (running_) return;
  running_ = true;
  const std::string encoded = encodeForm(rawText);
  form_ = "dat=";
  form_.append(encoded.data(), static_cast<qsizetype>(encoded.size()));
  answer_.clear();
  Q_EMIT started();
  web_.requestConversion(this, [this, run = ++run_](const std::string& host) {
    // The service may come up after a cancel.
    if (running_ && run == run_) post(host);
  });
}

void KmlExport::post(const std::string& host) {
  host_ = host;
  if (host.empty()) {
    fail("the conversion service could not be started", "変換サービスを起動できませんでした。");
    return;
  }
  const QUrl address(toQString(host + kConversion), QUrl::StrictMode);
  const bool isWeb =
      address.scheme() == QLatin1String("http") || address.scheme() == QLatin1String("https");
  if (!address.isValid() || !isWeb || address.host().isEmpty()) {
    fail("the conversion host in services.ini is not a web address: " + host,
         "services.iniの変換ホストがWebアドレスではありません。");
    return;
  }
  // A proxy would look for a loopback address on its own machine.
  manager_.setProxy(isLoopback(address.host()) ? QNetworkProxy::NoProxy
                                               : QNetworkProxy::DefaultProxy);
  QNetworkRequest request(address);
  request.setHeader(QNetworkRequest::ContentTypeHeader, QLatin1String(kFormType));
  // The answer has its own limit, and a track packs very well.
  request.setDecompressedSafetyCheckThreshold(-1);
  reply_ = manager_.post(request, form_);
  reply_->setReadBufferSize(kReadBuffer);
  connect(reply_, &QNetworkReply::uploadProgress, this, [this](qint64 sent, qint64 total) {
    if (total <= 0) return;
    silence_.start();
    // Once all is sent, the service is at work for a time nobody knows.
    Q_EMIT progressed(sent, sent == total ? -1 : total);
  });
  connect(reply_, &QNetworkReply::metaDataChanged, this, &KmlExport::takeHeaders);
  connect(reply_, &QNetworkReply::readyRead, this, &KmlExport::takeAnswer);
  connect(reply_, &QNetworkReply::finished, this, &KmlExport::finish);
  silence_.start();
}

void KmlExport::takeHeaders() {
  silence_.start();
  const QVariant length = reply_->header(QNetworkRequest::ContentLengthHeader);
  if (length.isValid() && length.toULongLong() > kLargestAnswer) failOnSize();
}

void KmlExport::takeAnswer() {
  silence_.start();
  while (reply_ != nullptr) {
    const QByteArray chunk = reply_->read(kChunk);
    if (chunk.isEmpty()) break;
    if (answer_.size() + static_cast<std::size_t>(chunk.size()) > kLargestAnswer) {
      failOnSize();
      return;
    }
    answer_.append(chunk.constData(), static_cast<std::size_t>(chunk.size()));
  }
  if (reply_ == nullptr) return;
  const QVariant length = reply_->header(QNetworkRequest::ContentLengthHeader);
  Q_EMIT progressed(static_cast<qint64>(answer_.size()),
                    length.isValid() ? length.toLongLong() : -1);
}

void KmlExport::finish() {
  takeAnswer();
  if (reply_ == nullptr) return;
  const QVariant length = reply_->header(QNetworkRequest::ContentLengthHeader);
  const bool whole = !length.isValid() || length.toULongLong() == answer_.size();
  const bool answered = reply_->attribute(QNetworkRequest::HttpStatusCodeAttribute).isValid();
  if (!answered || !isAnswer(reply_->error()) || !whole) {
    failOnNetwork();
    return;
  }
  store();
}

void KmlExport::store() {
  const Status stored = replaceWhole(target_, std::exchange(answer_, {}));
  if (!stored) {
    fail("the file could not be written (" + stored.error().text() + ")",
         "ファイルに書き込めませんでした(" + stored.error().text() + ")。");
    return;
  }
  stop();
  if (desktop_.isEnding()) return;
  if (desktop_.askYesNo(kOpenQuestion)) ShellOpen(desktop_, nativeText(target_));
}

void KmlExport::cancel() {
  if (running_) stop();
}

void KmlExport::stop() {
  running_ = false;
  silence_.stop();
  form_.clear();
  answer_ = {};
  if (QNetworkReply* reply = std::exchange(reply_, nullptr); reply != nullptr) {
    reply->disconnect(this);
    reply->abort();
    reply->deleteLater();
  }
  Q_EMIT ended();
}

void KmlExport::fail(const std::string& english, const std::string& japanese) {
  stop();
  if (desktop_.isEnding()) return;
  desktop_.showMessage("KML export failed: " + english + ". temp.kml was left as it was. " +
                       "KMLの出力に失敗しました。" + japanese + "temp.kmlは元のままです。");
}

void KmlExport::failOnSilence() {
  const std::string seconds =
      QString::number(static_cast<double>(silence_.interval()) / 1000).toStdString();
  fail("the conversion service was silent for " + seconds + " seconds",
       "変換サービスから" + seconds + "秒間応答がありませんでした。");
}

void KmlExport::failOnSize() {
  fail("the answer is larger than 64 MiB", "応答が64MiBを超えています。");
}

void KmlExport::failOnNetwork() {
  const QNetworkReply::NetworkError error = reply_->error();
  const std::string reason = reply_->errorString().toStdString();
  const bool begun = reply_->attribute(QNetworkRequest::HttpStatusCodeAttribute).isValid();
  if (error == QNetworkReply::RemoteHostClosedError || (begun && isAnswer(error))) {
    fail("the connection was closed before the answer was complete",
         "応答が終わる前に接続が切れました。");
  } else if (begun) {
    fail("the transfer from " + host_ + " broke off (" + reason + ")",
         host_ + " との通信が中断されました。");
  } else {
    fail("the conversion service at " + host_ + " could not be reached (" + reason + ")",
         "変換サービス " + host_ + " に接続できませんでした。");
  }
}

}  // namespace vel
