#include "core/ui/qt_desktop.h"

#include <QApplication>
#include <QClipboard>
#include <QDateTime>
#include <QMessageBox>

#include "core/ui/plain_text.h"

namespace vel {
namespace {

QMessageBox::StandardButton ask(const std::string& text, QMessageBox::Icon icon,
                                QMessageBox::StandardButtons buttons) {
  QMessageBox box(QApplication::activeWindow());
  box.setObjectName(QStringLiteral("MessageBox"));
  box.setWindowTitle(QString::fromLatin1(kProgramTitle));
  box.setIcon(icon);
  box.setStandardButtons(buttons);
  // Texts come from files and from the air: never taken as markup. The box
  // looks at its text as soon as it has it.
  box.setTextFormat(Qt::PlainText);
  box.setText(plainMessage(text));
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
  // What was asked for first stands: a box that the end closes is no answer.
  if (ending_) return;
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

std::chrono::steady_clock::time_point QtDesktop::moment() {
  return std::chrono::steady_clock::now();
}

void QtDesktop::runLog(std::string_view) {}

}  // namespace vel
