#pragma once

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QTimer>
#include <chrono>
#include <cstddef>
#include <filesystem>
#include <memory>
#include <string>

#include "core/context.h"
#include "core/job.h"

namespace vel {

class OwnSite;

/// Posts a raw log to the KML conversion, stores the answer as temp.kml and
/// offers to open it. One export at a time; encoding and storing are jobs, the
/// transfer comes in events.
class KmlExport : public QObject {
  Q_OBJECT

 public:
  /// The context and the site outlive this object.
  KmlExport(const Context& context, OwnSite& site, QObject* parent);
  ~KmlExport() override;

  /// Starts an export of these bytes and returns at once; does nothing while
  /// one runs. The user is told once when it fails; temp.kml is then as it was.
  void start(std::string rawText);

  /// Gives the running export up without a word; temp.kml stays as it was.
  void cancel();

  [[nodiscard]] bool isRunning() const { return run_ != nullptr; }

  /// How long the service may stay silent; 30 seconds unless set.
  void setSilenceLimit(std::chrono::milliseconds limit);

 Q_SIGNALS:
  void started();
  /// Bytes sent or received of this many; -1 of a total that is not known.
  void progressed(qint64 done, qint64 total);
  /// The export is over, well or not; comes before any message.
  void ended();

 private:
  void requestHost();
  void post(const std::string& host);
  void takeHeaders();
  void takeAnswer();
  void finish();
  void store();
  void takeStored(const Status& stored);
  void endTransfer();
  void stop();
  void fail(const std::string& english, const std::string& japanese);
  void failOnSilence();
  void failOnSize();
  void failOnNetwork();

  const Context& context_;
  OwnSite& site_;
  std::filesystem::path target_;  // temp.kml
  JobSlot work_;
  QNetworkAccessManager manager_;
  QNetworkReply* reply_ = nullptr;
  QTimer silence_;
  std::string host_;
  QByteArray form_;
  std::string answer_;
  std::unique_ptr<QObject> run_;  // asks for the host; null while nothing runs
};

/// A larger answer is refused.
constexpr std::size_t kLargestAnswer = std::size_t{64} << 20;

/// The question when the answer has been stored.
constexpr const char* kOpenQuestion = "Complete download. Do you open with the Google earth?";

}  // namespace vel
