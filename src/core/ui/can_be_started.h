#pragma once

#include <QFileInfo>
#include <QString>

namespace vel {

/// Whether a file is there that the system may start. To be asked before a
/// QProcess is: where the system refuses a program, QProcess keeps an end of a
/// pipe open for good.
[[nodiscard]] inline bool canBeStarted(const QString& executable) {
  const QFileInfo file(executable);
  return file.isFile() && file.isExecutable();
}

}  // namespace vel
