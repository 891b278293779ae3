#pragma once

#include <QObject>
#include <QProcess>
#include <memory>
#include <string>

#include "core/folders.h"
#include "core/services.h"

namespace vel {

/// The companion service velweb, which answers for the system's own web site
/// where services.ini names no real host. It is started when it is first
/// needed, and ends with this program however that ends: it holds the reading
/// end of a pipe and stops when the pipe closes.
class Companion : public QObject {
  Q_OBJECT

 public:
  /// `executable` is velweb's path; by default it lies beside the program.
  explicit Companion(const Folders& folders, const QString& executable = defaultExecutable());
  ~Companion() override;

  /// Scheme, host and port, such as "http://127.0.0.1:40123". Empty when the
  /// service cannot be started. Waits a few seconds at the most.
  std::string address();

  [[nodiscard]] static QString defaultExecutable();

 private:
  Folders folders_;
  QString executable_;
  std::unique_ptr<QProcess> process_;
  std::string address_;
};

}  // namespace vel
