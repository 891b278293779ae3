#pragma once

#include <QObject>
#include <QPointer>
#include <QProcess>
#include <QTimer>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "core/folders.h"

namespace vel {

/// The companion service velweb, which answers for the system's own web site
/// where services.ini names no real host. It is started when it is first
/// needed, again when it has ended meanwhile, and ends with this program
/// however that ends: it holds the reading end of a pipe and stops when the
/// pipe closes. One that the system has refused ten times is left alone.
class Companion : public QObject {
  Q_OBJECT

 public:
  /// Takes scheme, host and port, such as "http://127.0.0.1:40123"; empty when
  /// the service cannot be started.
  using Ready = std::function<void(const std::string&)>;

  /// `executable` is velweb's path; by default it lies beside the program.
  explicit Companion(const Folders& folders, const QString& executable = defaultExecutable());
  ~Companion() override;

  /// Starts the service where it does not run, and calls `ready` from the
  /// event loop once its address is known, or that there is none; never when
  /// `context` is gone by then.
  void request(QObject* context, Ready ready);

  [[nodiscard]] static QString defaultExecutable();

 private:
  struct Request {
    QPointer<QObject> context;
    Ready ready;
  };

  [[nodiscard]] bool isUp() const;
  void begin();
  void takeAddress();
  void giveUp();
  void answerRequests();

  Folders folders_;
  QString executable_;
  std::unique_ptr<QProcess> process_;
  QTimer startTime_;
  bool starting_ = false;
  int refusedStarts_ = 0;
  std::string address_;
  std::vector<Request> requests_;
};

}  // namespace vel
