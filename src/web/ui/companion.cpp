#include "web/ui/companion.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>

#include "core/file.h"
#include "core/ui/qt_desktop.h"

namespace vel {
namespace {

constexpr int kStartMilliseconds = 5000;
constexpr int kEndMilliseconds = 2000;

}  // namespace

Companion::Companion(const Folders& folders, const QString& executable)
    : folders_(folders), executable_(executable) {}

Companion::~Companion() {
  if (process_ == nullptr) return;
  process_->closeWriteChannel();
  if (!process_->waitForFinished(kEndMilliseconds)) process_->kill();
  process_->waitForFinished(kEndMilliseconds);
}

QString Companion::defaultExecutable() {
  return QDir(QCoreApplication::applicationDirPath()).filePath(QStringLiteral("velweb"));
}

std::string Companion::address() {
  if (process_ != nullptr && process_->state() == QProcess::Running) return address_;
  process_ = std::make_unique<QProcess>();
  process_->setProcessChannelMode(QProcess::SeparateChannels);
  process_->setStandardErrorFile(QProcess::nullDevice());
  process_->start(executable_,
                  {QStringLiteral("--program-folder"), toQString(toUtf8(folders_.program)),
                   QStringLiteral("--parent-pipe")});
  address_.clear();
  QElapsedTimer waited;
  waited.start();
  while (!process_->canReadLine()) {
    const auto left = kStartMilliseconds - static_cast<int>(waited.elapsed());
    if (left <= 0 || !process_->waitForReadyRead(left)) return {};
  }
  address_ = process_->readLine().trimmed().toStdString();
  return address_;
}

}  // namespace vel
