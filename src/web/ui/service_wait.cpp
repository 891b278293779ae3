#include "web/ui/service_wait.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>
#include <utility>

#include "core/ui/qt_desktop.h"

namespace vel {
namespace {

constexpr int kShowAfterMilliseconds = 400;

}  // namespace

ServiceWait::ServiceWait(const QString& text, QWidget* parent, std::function<void()> givenUp)
    : QDialog(parent), givenUp_(std::move(givenUp)) {
  setObjectName(QStringLiteral("ServiceWait"));
  setWindowTitle(QString::fromLatin1(kProgramTitle));
  auto* label = new QLabel(text, this);
  label->setObjectName(QStringLiteral("Label1"));
  label->setTextFormat(Qt::PlainText);
  auto* progress = new QProgressBar(this);
  progress->setRange(0, 0);
  progress->setTextVisible(false);
  progress->setAccessibleName(text.section(QLatin1Char('\n'), 0, 0));
  auto* buttons = new QDialogButtonBox(this);
  auto* cancel = new QPushButton(QStringLiteral("Cancel"), this);
  cancel->setObjectName(QStringLiteral("CancelButton"));
  buttons->addButton(cancel, QDialogButtonBox::RejectRole);
  auto* rows = new QVBoxLayout(this);
  rows->addWidget(label);
  rows->addWidget(progress);
  rows->addWidget(buttons);
  connect(cancel, &QPushButton::clicked, this, &ServiceWait::reject);
  QTimer::singleShot(kShowAfterMilliseconds, this, &QDialog::show);
}

void ServiceWait::reject() {
  hide();
  if (const auto givenUp = std::exchange(givenUp_, nullptr)) givenUp();
}

}  // namespace vel
