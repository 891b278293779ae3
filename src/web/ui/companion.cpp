#include "web/ui/companion.h"

#include <QCoreApplication>
#include <QDir>
#include <QStandardPaths>
#include <utility>

#include "core/file.h"
#include "core/ui/can_be_started.h"
#include "core/ui/qt_desktop.h"

namespace vel {
namespace {

constexpr int kStartMilliseconds = 5000;
constexpr int kEndMilliseconds = 2000;
/// Each refused start costs a descriptor for good (can_be_started.h).
constexpr int kMostRefusedStarts = 10;

}  // namespace

Companion::Companion(const Folders& folders, const QString& executable)
    : folders_(folders), executable_(executable) {
  startTime_.setSingleShot(true);
  startTime_.setInterval(kStartMilliseconds);
  connect(&startTime_, &QTimer::timeout, this, &Companion::giveUp);
}

Companion::~Companion() {
  if (process_ == nullptr) return;
  process_->disconnect(this);
  process_->closeWriteChannel();
  // One that has not come up by now may never listen to the pipe either.
  if (!starting_ && process_->waitForFinished(kEndMilliseconds)) return;
  process_->kill();
  process_->waitForFinished(kEndMilliseconds);
}

QString Companion::defaultExecutable() {
  const QString folder = QCoreApplication::applicationDirPath();
  // Finds the name's ending too, where programs have one.
  const QString found = QStandardPaths::findExecutable(QStringLiteral("velweb"), {folder});
  return found.isEmpty() ? QDir(folder).filePath(QStringLiteral("velweb")) : found;
}

bool Companion::isUp() const {
  return process_ != nullptr && process_->state() == QProcess::Running && !address_.empty();
}

void Companion::begin() {
  if (starting_) return;
  starting_ = true;
  address_.clear();
  process_.reset();
  if (!canBeStarted(executable_) || refusedStarts_ >= kMostRefusedStarts) {
    QMetaObject::invokeMethod(this, &Companion::giveUp, Qt::QueuedConnection);
    return;
  }
  process_ = std::make_unique<QProcess>();
  process_->setProcessChannelMode(QProcess::SeparateChannels);
  process_->setStandardErrorFile(QProcess::nullDevice());
  connect(process_.get(), &QProcess::readyReadStandardOutput, this, &Companion::takeAddress);
  connect(process_.get(), &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
    if (error == QProcess::FailedToStart) ++refusedStarts_;
    giveUp();
  });
  connect(process_.get(), &QProcess::finished, this, &Companion::giveUp);
  startTime_.start();
  process_->start(executable_,
                  {QStringLiteral("--program-folder"), toQString(toUtf8(folders_.program)),
                   QStringLiteral("--parent-pipe")});
}

void Companion::takeAddress() {
  if (!starting_ || !process_->canReadLine()) return;
  const std::string line = process_->readLine().trimmed().toStdString();
  if (!line.starts_with("http://")) {
    giveUp();
    return;
  }
  starting_ = false;
  startTime_.stop();
  refusedStarts_ = 0;
  address_ = line;
  answerRequests();
}

void Companion::giveUp() {
  if (!starting_) return;
  starting_ = false;
  startTime_.stop();
  // Reached from the process's own signals: it has to outlive this call.
  if (QProcess* process = process_.release()) {
    process->disconnect(this);
    process->kill();
    process->deleteLater();
  }
  answerRequests();
}

void Companion::answerRequests() {
  for (const Request& request : std::exchange(requests_, {})) {
    if (request.context != nullptr) request.ready(address_);
  }
}

void Companion::request(QObject* context, Ready ready) {
  requests_.push_back({context, std::move(ready)});
  if (isUp()) {
    QMetaObject::invokeMethod(this, &Companion::answerRequests, Qt::QueuedConnection);
    return;
  }
  begin();
}

}  // namespace vel
