#include "web/ui/conffig_dialog.h"

#include <QDialogButtonBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "core/helpers.h"
#include "core/program_files.h"
#include "core/ui/qt_desktop.h"
#include "tables/record.h"
#include "web/address.h"

namespace vel {
namespace {

struct EngineBoxes {
  EditorBox* name;
  EditorBox* address;
  QGridLayout* grid;
};

// One frame: a name, an address and a Test button.
EngineBoxes addEngine(QGroupBox* frame, int index, const QString& addressLabel, QPushButton* test) {
  auto* grid = new QGridLayout(frame);
  auto* name = new EditorBox(frame);
  name->setObjectName(QStringLiteral("Text%1").arg(2 * index + 1));
  name->setAccessibleName(frame->title() + QStringLiteral(" name"));
  auto* address = new EditorBox(frame);
  address->setObjectName(QStringLiteral("Text%1").arg(2 * index + 2));
  address->setAccessibleName(frame->title() + QStringLiteral(" address"));
  address->setMinimumWidth(address->fontMetrics().averageCharWidth() * 60);
  auto* nameLabel = new QLabel(QStringLiteral("Name"), frame);
  nameLabel->setBuddy(name);
  auto* urlLabel = new QLabel(QStringLiteral("URL"), frame);
  urlLabel->setBuddy(address);
  grid->addWidget(nameLabel, 0, 0);
  grid->addWidget(name, 0, 1);
  grid->addWidget(urlLabel, 1, 0);
  grid->addWidget(address, 1, 1);
  grid->addWidget(new QLabel(addressLabel, frame), 1, 2);
  grid->addWidget(test, 2, 2);
  return {name, address, grid};
}

QPushButton* makeTestButton(QWidget* parent, int index) {
  auto* button = new QPushButton(QStringLiteral("Test"), parent);
  button->setObjectName(QStringLiteral("Command1(%1)").arg(index));
  button->setAutoDefault(false);
  button->setToolTip(
      ConffigDialog::tr("Opens a sample with this address\nこのURLでサンプルを開く"));
  return button;
}

}  // namespace

ConffigDialog::ConffigDialog(const Context& context, OwnSite& site, QWidget* parent)
    : QDialog(parent), context_(context), site_(site) {
  setObjectName(QStringLiteral("ConffigDialog"));
  setWindowTitle(QStringLiteral("Conffig"));
  const Settings& env = context.settings;

  auto* registrationFrame = new QGroupBox(QStringLiteral("Reg.No. search"), this);
  QPushButton* registrationTest = makeTestButton(registrationFrame, 0);
  const EngineBoxes registration =
      addEngine(registrationFrame, 0, QStringLiteral("+ [Reg.No.]"), registrationTest);
  registrationName_ = registration.name;
  registrationAddress_ = registration.address;

  auto* flightFrame = new QGroupBox(QStringLiteral("Flight No. search"), this);
  QPushButton* flightTest = makeTestButton(flightFrame, 1);
  const EngineBoxes flight =
      addEngine(flightFrame, 1, QStringLiteral("+ [Flight No.]"), flightTest);
  flightName_ = flight.name;
  flightAddress_ = flight.address;
  zeroSuppress_ =
      new QCheckBox(QStringLiteral("Zero suppress  ( ex. JL0012 -> JL12 )"), flightFrame);
  zeroSuppress_->setObjectName(QStringLiteral("Check1"));
  flight.grid->addWidget(zeroSuppress_, 2, 1);

  keepCursor_ =
      new QCheckBox(QStringLiteral("When retrieving, the cursor position is kept."), this);
  keepCursor_->setObjectName(QStringLiteral("Check2"));

  auto* ok = new QPushButton(QStringLiteral("OK"), this);
  ok->setObjectName(QStringLiteral("OKButton"));
  ok->setDefault(true);
  auto* cancel = new QPushButton(QStringLiteral("Cancel"), this);
  cancel->setObjectName(QStringLiteral("CancelButton"));
  auto* buttons = new QDialogButtonBox(this);
  buttons->addButton(ok, QDialogButtonBox::AcceptRole);
  buttons->addButton(cancel, QDialogButtonBox::RejectRole);

  auto* rows = new QVBoxLayout(this);
  rows->addWidget(registrationFrame);
  rows->addWidget(flightFrame);
  rows->addWidget(keepCursor_);
  rows->addWidget(buttons);

  registrationName_->setValue(toQString(env.env_regDefName0));
  registrationAddress_->setValue(toQString(env.env_regDefUrl0));
  flightName_->setValue(toQString(env.env_FltDefName0));
  flightAddress_->setValue(toQString(env.env_FltDefUrl0));
  zeroSuppress_->setChecked(env.env_fltSchZsp == 1);
  keepCursor_->setChecked(env.env_keepCsrPos == 1);

  connect(registrationTest, &QPushButton::clicked, this, &ConffigDialog::testRegistration);
  connect(flightTest, &QPushButton::clicked, this, &ConffigDialog::testFlight);
  connect(ok, &QPushButton::clicked, this, &ConffigDialog::store);
  connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
}

void ConffigDialog::store() {
  const std::string typed = (registrationName_->value() + registrationAddress_->value() +
                             flightName_->value() + flightAddress_->value())
                                .toStdString();
  if (!canBeStored(context_.encoding, typed)) {
    context_.desktop.showMessage(kIllegalCharacter);
    return;
  }
  Settings& env = context_.settings;
  env.env_regDefName0 = registrationName_->value().toStdString();
  env.env_regDefUrl0 = registrationAddress_->value().toStdString();
  env.env_FltDefName0 = flightName_->value().toStdString();
  env.env_FltDefUrl0 = flightAddress_->value().toStdString();
  env.env_fltSchZsp = zeroSuppress_->isChecked() ? 1 : 0;
  env.env_keepCsrPos = keepCursor_->isChecked() ? 1 : 0;
  // Nothing is shown for any trouble with the settings.
  static_cast<void>(SaveEnv(settingsFile(context_.folders), context_.encoding, env));
  accept();
}

void ConffigDialog::testRegistration() {
  openSample(registrationSample(registrationAddress_->value().toStdString()));
}

void ConffigDialog::testFlight() {
  const std::string prefix = flightAddress_->value().toStdString();
  const auto zeros = zeroSuppress_->isChecked() ? LeadingZeros::dropped : LeadingZeros::kept;
  const auto openAt = [this, prefix, zeros](const std::string& homepage) {
    openSample(flightSample(prefix, zeros, homepage));
  };
  if (isHomepagePrefix(prefix)) {
    site_.requestHomepage(this, openAt);
  } else {
    openAt({});
  }
}

void ConffigDialog::openSample(const SearchSample& sample) {
  context_.desktop.showMessage(sample.message);
  ShellOpen(context_.desktop, sample.address);
}

}  // namespace vel
