#include "core/ui/qt_desktop.h"

#include <QApplication>
#include <QClipboard>
#include <QDateTime>
#include <QMessageBox>

namespace vel {
namespace {

QMessageBox::StandardButton ask(const std::string& text, QMessageBox::Icon icon,
                                QMessageBox::StandardButtons buttons) {
  QMessageBox box(icon, QString::fromLatin1(kProgramTitle), toQString(text), buttons,
                  QApplication::activeWindow());
  // Texts come from files and from the air: never taken as markup.
  box.setTextFormat(Qt::PlainText);
  box.setObjectName(QStringLiteral("MessageBox"));
  return static_cast<QMessageBox::StandardButton>(box.exec());
}

}  // namespace

void QtDesktop::showMessage(const std::string& text) {
  ask(text, QMessageBox::Information, QMessageBox::Ok);
}

bool QtDesktop::askRetry(const std::string& text) {
  return ask(text, QMessageBox::Warning, QMessageBox::Retry | QMessageBox::Cancel) ==
         QMessageBox::Retry;
}

bool QtDesktop::askYesNo(const std::string& text) {
  return ask(text, QMessageBox::Question, QMessageBox::Yes | QMessageBox::No) == QMessageBox::Yes;
}

void QtDesktop::endProgram(int status) {
  ending_ = true;
  exitStatus_ = status;
  QCoreApplication::exit(status);
}

int QtDesktop::open(const std::string& target) { return openWithDesktop(target); }

std::string QtDesktop::clipboardText() {
  return QGuiApplication::clipboard()->text().toStdString();
}

void QtDesktop::setClipboardText(const std::string& text) {
  QGuiApplication::clipboard()->setText(toQString(text));
}

std::chrono::local_seconds QtDesktop::now() {
  const QDateTime now = QDateTime::currentDateTime();
  return std::chrono::local_seconds(
      std::chrono::seconds(now.toSecsSinceEpoch() + now.offsetFromUtc()));
}

void QtDesktop::processEvents() { QCoreApplication::processEvents(); }

void QtDesktop::runLog(std::string_view) {}

}  // namespace vel
