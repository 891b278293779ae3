#pragma once

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QTimer>
#include <chrono>
#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>

#include "core/desktop.h"

namespace vel {

class WebAccess;

/// Posts a raw log to the KML conversion, stores the answer as temp.kml and
/// offers to open it. One export at a time; everything happens in events on
/// the caller's thread.
class KmlExport : public QObject {
  Q_OBJECT

 public:
  /// `target` is the file that takes the answer. The desktop and the web
  /// access outlive this object.
  KmlExport(Desktop& desktop, WebAccess& web, std::filesystem::path target, QObject* parent);
  ~KmlExport() override;

  /// Starts an export of these bytes and returns at once; does nothing while
  /// one runs. The user is told once when it fails; temp.kml is then as it was.
  void start(std::string_view rawText);

  /// Gives the running export up without a word; temp.kml stays as it was.
  void cancel();

  [[nodiscard]] bool isRunning() const { return running_; }

  /// How long the service may stay silent; 30 seconds unless set.
  void setSilenceLimit(std::chrono::milliseconds limit);

 Q_SIGNALS:
  void started();
  /// Bytes sent or received of this many; -1 of a total that is not known.
  void progressed(qint64 done, qint64 total);
  /// The export is over, well or not; comes before any message.
  void ended();

 private:
  void post(const std::string& host);
  void takeHeaders();
  void takeAnswer();
  void finish();
  void store();
  void stop();
  void fail(const std::string& english, const std::string& japanese);
  void failOnSilence();
  void failOnSize();
  void failOnNetwork();

  Desktop& desktop_;
  WebAccess& web_;
  std::filesystem::path target_;
  QNetworkAccessManager manager_;
  QNetworkReply* reply_ = nullptr;
  QTimer silence_;
  std::string host_;
  QByteArray form_;
  std::string answer_;
  int run_ = 0;
  bool running_ = false;
};

/// A larger answer is refused.
constexpr std::size_t kLargestAnswer = std::size_t{64} << 20;

/// The question when the answer has been stored.
constexpr const char* kOpenQuestion = "Complete download. Do you open with the Google earth?";

}  // namespace vel
