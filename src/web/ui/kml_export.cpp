#include "web/ui/kml_export.h"

#include <QHostAddress>
#include <QNetworkProxy>
#include <QNetworkRequest>
#include <QUrl>
#include <algorithm>
#include <memory>
#include <optional>
#include <string_view>
#include <utility>

#include "core/file.h"
#include "core/helpers.h"
#include "core/program_files.h"
#include "core/ui/qt_desktop.h"
#include "web/form_encoder.h"
#include "web/ui/own_site.h"

namespace vel {
namespace {

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

// Encodes a raw text behind what the form holds already.
class EncodeJob : public Job {
 public:
  // The form outlives the job.
  EncodeJob(std::string rawText, QByteArray& form) : rawText_(std::move(rawText)), form_(form) {}

  Result<JobProgress> step(Clock::time_point deadline) override {
    do {
      std::string codes;
      encoder_.add(std::string_view(rawText_).substr(encoded_, kEncodedAtOnce), codes);
      form_.append(codes.data(), static_cast<qsizetype>(codes.size()));
      encoded_ = std::min(encoded_ + kEncodedAtOnce, rawText_.size());
      if (encoded_ == rawText_.size()) return JobProgress::done;
    } while (Clock::now() < deadline);
    return JobProgress::more;
  }

 private:
  static constexpr std::size_t kEncodedAtOnce = std::size_t{64} << 10;

  std::string rawText_;
  QByteArray& form_;
  FormEncoder encoder_;
  std::size_t encoded_ = 0;
};

// Writes a file whole, some of it in each step.
class StoreJob : public Job {
 public:
  StoreJob(std::filesystem::path target, std::string bytes)
      : target_(std::move(target)), bytes_(std::move(bytes)) {}

  Result<JobProgress> step(Clock::time_point deadline) override {
    if (!file_) {
      Result<WholeFile> file = WholeFile::create(target_, kKmlSuffix);
      if (!file) return file.error();
      file_.emplace(std::move(*file));
    }
    while (written_ < bytes_.size()) {
      const auto piece = std::string_view(bytes_).substr(written_, kWrittenAtOnce);
      if (const Status written = file_->write(piece); !written) return written.error();
      written_ += piece.size();
      if (Clock::now() >= deadline) return JobProgress::more;
    }
    if (const Status finished = file_->finish(); !finished) return finished.error();
    return JobProgress::done;
  }

 private:
  static constexpr std::size_t kWrittenAtOnce = std::size_t{1} << 20;

  std::filesystem::path target_;
  std::string bytes_;
  std::optional<WholeFile> file_;
  std::size_t written_ = 0;
};

}  // namespace

KmlExport::KmlExport(const Context& context, OwnSite& site, QObject* parent)
    : QObject(parent),
      context_(context),
      site_(site),
      target_(kmlFile(context.folders)),
      work_(context.jobs) {
  silence_.setSingleShot(true);
  silence_.setInterval(kSilenceLimit);
  connect(&silence_, &QTimer::timeout, this, &KmlExport::failOnSilence);
}

KmlExport::~KmlExport() {
  if (reply_ != nullptr) reply_->disconnect(this);
}

void KmlExport::setSilenceLimit(std::chrono::milliseconds limit) { silence_.setInterval(limit); }

void KmlExport::start(std::string rawText) {
  if (isRunning()) return;
  run_ = std::make_unique<QObject>();
  form_ = "dat=";
  answer_.clear();
  Q_EMIT started();
  work_.start(std::make_unique<EncodeJob>(std::move(rawText), form_),
              {.ended = [this](const Status&) { requestHost(); }});
}

void KmlExport::requestHost() {
  // The service may come up after a cancel: nobody is told then.
  site_.requestConversion(run_.get(), [this](const std::string& host) { post(host); });
}

void KmlExport::post(const std::string& host) {
  host_ = host;
  if (host.empty()) {
    fail("the conversion service could not be started", "変換サービスを起動できませんでした。");
    return;
  }
  const QUrl address(toQString(host + std::string(kConversionPath)), QUrl::StrictMode);
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
  endTransfer();
  work_.start(std::make_unique<StoreJob>(target_, std::exchange(answer_, {})),
              {.ended = [this](const Status& stored) { takeStored(stored); }});
}

void KmlExport::takeStored(const Status& stored) {
  if (!stored) {
    fail("the file could not be written (" + stored.error().text() + ")",
         "ファイルに書き込めませんでした(" + stored.error().text() + ")。");
    return;
  }
  stop();
  if (context_.desktop.askYesNo(kOpenQuestion)) ShellOpen(context_.desktop, nativeText(target_));
}

void KmlExport::cancel() {
  if (isRunning()) stop();
}

void KmlExport::endTransfer() {
  silence_.stop();
  if (QNetworkReply* reply = std::exchange(reply_, nullptr); reply != nullptr) {
    reply->disconnect(this);
    reply->abort();
    reply->deleteLater();
  }
  form_ = {};
}

void KmlExport::stop() {
  run_.reset();
  work_.stop();
  endTransfer();
  answer_ = {};
  Q_EMIT ended();
}

void KmlExport::fail(const std::string& english, const std::string& japanese) {
  stop();
  context_.desktop.showMessage("KML export failed: " + english + ". temp.kml was left as it was. " +
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
