#include "app/ui/first_start_dialog.h"

#include <QDialogButtonBox>
#include <QFileDialog>
#include <QMessageBox>
#include <QPushButton>
#include <QStandardPaths>
#include <QVBoxLayout>
#include <utility>

#include "app/station.h"
#include "app/ui/program_icon.h"
#include "core/file.h"
#include "core/ui/can_be_started.h"
#include "core/ui/plain_text.h"
#include "core/ui/qt_desktop.h"

namespace vel {
namespace {

namespace fs = std::filesystem;

constexpr int kNoteHeight = 3;  // lines
constexpr int kIconSize = 64;
constexpr int kWidthInLetters = 72;
// So many sample stations find a name of their own.
constexpr int kMostSamples = 1000;

QString shownPath(const fs::path& path) { return shownText(toUtf8(path)); }

// A folder that is not there yet: "VEL sample", "VEL sample 2".
fs::path freeFolder(const fs::path& parent) {
  for (int number = 1; number < kMostSamples; ++number) {
    const fs::path folder =
        parent / ("VEL sample" + (number == 1 ? std::string() : " " + std::to_string(number)));
    std::error_code error;
    if (!fs::exists(folder, error)) return folder;
  }
  return parent / "VEL sample";
}

}  // namespace

FirstStartDialog::FirstStartDialog(Choices choices, QWidget* parent)
    : QDialog(parent), choices_(std::move(choices)) {
  setObjectName(QStringLiteral("FirstStart"));
  setWindowTitle(QString::fromLatin1(kProgramTitle));
  auto* picture = new QLabel(this);
  picture->setPixmap(programIcon().pixmap(QSize(kIconSize, kIconSize), devicePixelRatioF()));
  auto* question = new QLabel(tr("Which station do you want to open?\n"
                                 "どの受信局のデータを開きますか？"),
                              this);
  QFont large = question->font();
  large.setPointSizeF(large.pointSizeF() * 1.2);
  large.setBold(true);
  question->setFont(large);
  auto* heading = new QHBoxLayout;
  heading->addWidget(picture);
  heading->addSpacing(8);
  heading->addWidget(question, 1);

  buttons_ = new QWidget(this);
  auto* column = new QVBoxLayout(buttons_);
  column->setContentsMargins(0, 0, 0, 0);
  auto* open =
      addChoice(QStringLiteral("OpenDecoderFolder"), tr("&Open the folder of my decoder..."),
                tr("デコーダーのフォルダーを開く"),
                tr("The folder that holds \"logs\" and \"data\"\n"
                   "logsとdataのあるフォルダー"));
  connect(open, &QPushButton::clicked, this, &FirstStartDialog::openDecoderFolder);
  if (choices_.sampleMaker) {
    auto* sample = addChoice(
        QStringLiteral("MakeSample"), tr("Make a &sample station"), tr("見本の受信局を作る"),
        tr("A week of made-up logs with tables and drawn photos, to look around. In %1\n"
           "1週間分の架空のログと表、絵で描いた写真")
            .arg(shownPath(choices_.sampleParent)));
    connect(sample, &QPushButton::clicked, this, &FirstStartDialog::makeSample);
  }
  auto* empty = addChoice(QStringLiteral("MakeEmpty"), tr("Make a new &empty station..."),
                          tr("空の受信局を新しく作る"),
                          tr("Empty tables, and folders for logs and photos, in a folder of your "
                             "choice\n選んだフォルダーに空の表とログ・写真用のフォルダーを作成"));
  connect(empty, &QPushButton::clicked, this, &FirstStartDialog::makeEmpty);

  note_ = new QLabel(this);
  note_->setObjectName(QStringLiteral("Note"));
  note_->setTextFormat(Qt::PlainText);
  note_->setWordWrap(true);
  note_->setMinimumHeight(kNoteHeight * note_->fontMetrics().lineSpacing());
  progress_ = new QProgressBar(this);
  progress_->setObjectName(QStringLiteral("Progress"));
  progress_->setAccessibleName(tr("Making the sample station"));
  progress_->setRange(0, 0);
  progress_->hide();
  auto* box = new QDialogButtonBox(QDialogButtonBox::Cancel, this);
  connect(box, &QDialogButtonBox::rejected, this, &QDialog::reject);

  auto* rows = new QVBoxLayout(this);
  rows->addLayout(heading);
  rows->addWidget(buttons_);
  rows->addWidget(note_, 1);
  rows->addWidget(progress_);
  rows->addWidget(box);
  setMinimumWidth(kWidthInLetters * fontMetrics().averageCharWidth());
  open->setFocus();

  connect(&maker_, &QProcess::finished, this, [this](int exitCode, QProcess::ExitStatus status) {
    finishSample(status == QProcess::NormalExit && exitCode == 0);
  });
  connect(&maker_, &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
    if (error == QProcess::FailedToStart) finishSample(false);
  });
  if (!choices_.missing.empty()) {
    tell(tr("The station opened last is not there: %1\n前回の受信局が見つかりません。")
             .arg(shownPath(choices_.missing)));
  }
}

FirstStartDialog::~FirstStartDialog() {
  maker_.disconnect(this);
  if (maker_.state() == QProcess::NotRunning) return;
  maker_.kill();
  maker_.waitForFinished();
}

ChoiceButton* FirstStartDialog::addChoice(const QString& name, const QString& english,
                                          const QString& japanese, const QString& explanation) {
  auto* button = new ChoiceButton(english + QStringLiteral(" / ") + japanese, buttons_);
  button->setObjectName(name);
  QString spoken = english;
  button->setAccessibleName(spoken.remove(QLatin1Char('&')));
  button->setAccessibleDescription(explanation);
  buttons_->layout()->addWidget(button);
  auto* label = new QLabel(buttons_);
  label->setWordWrap(true);
  label->setIndent(button->textIndent());
  label->setTextFormat(Qt::PlainText);
  label->setText(explanation);
  buttons_->layout()->addWidget(label);
  return button;
}

QString FirstStartDialog::askForFolder(QWidget* parent, const QString& title) {
  return QFileDialog::getExistingDirectory(
      parent, title, QStandardPaths::writableLocation(QStandardPaths::HomeLocation));
}

void FirstStartDialog::tell(const QString& text) {
  note_->setText(text);
  note_->setAccessibleName(text);
}

void FirstStartDialog::openDecoderFolder() {
  const QString chosen =
      choices_.chooseFolder(this, tr("The folder of the decoder / デコーダーのフォルダー"));
  if (chosen.isEmpty()) return;
  const auto folder = programFolderNear(toPath(chosen.toStdString()));
  if (!folder) {
    tell(tr("No \"logs\" and no \"data\" in %1\nこのフォルダーにはlogsもdataもありません。")
             .arg(shownText(chosen)));
    return;
  }
  if (agreesToEmptyTables(missingTables(*folder))) finish(*folder);
}

bool FirstStartDialog::agreesToEmptyTables(const std::vector<std::string>& missing) {
  if (missing.empty()) return true;
  QStringList names;
  for (const std::string& name : missing) names.append(toQString(name));
  QMessageBox question(QMessageBox::Question, QString::fromLatin1(kProgramTitle),
                       tr("This station has no %1. Make empty ones?\n"
                          "これらの表がありません。空の表を作りますか？")
                           .arg(names.join(QStringLiteral(", "))),
                       QMessageBox::Yes | QMessageBox::No, this);
  question.setObjectName(QStringLiteral("MissingTables"));
  question.setTextFormat(Qt::PlainText);
  return question.exec() == QMessageBox::Yes;
}

void FirstStartDialog::makeEmpty() {
  const QString chosen =
      choices_.chooseFolder(this, tr("Where to make the station / 受信局を作るフォルダー"));
  if (chosen.isEmpty()) return;
  const fs::path base = toPath(chosen.toStdString());
  // In a station that is there already an empty one would be lost.
  if (holdsStation(base)) {
    tell(tr("This folder holds a station already: %1\nこのフォルダーには受信局があります。")
             .arg(shownText(chosen)));
    return;
  }
  finish(base / "vel");
}

void FirstStartDialog::makeSample() {
  sample_ = freeFolder(choices_.sampleParent);
  buttons_->setEnabled(false);
  progress_->show();
  tell(tr("Making the sample station...\n見本の受信局を作っています..."));
  const QString maker = toQString(toUtf8(*choices_.sampleMaker));
  if (!canBeStarted(maker)) {
    finishSample(false);
    return;
  }
  maker_.start(maker, {toQString(toUtf8(sample_))});
}

void FirstStartDialog::finishSample(bool made) {
  progress_->hide();
  buttons_->setEnabled(true);
  if (made) {
    finish(sample_ / "vel");
    return;
  }
  const QString reason = shownText(QString::fromUtf8(maker_.readAllStandardError()).trimmed());
  tell(tr("The sample station was not made.\n見本の受信局を作れませんでした。") +
       QLatin1Char('\n') + reason);
}

void FirstStartDialog::finish(const fs::path& programFolder) {
  if (const Status status = completeStation(programFolder); !status) {
    tell(tr("The station cannot be used. この受信局は使えません。") + QLatin1Char('\n') +
         shownText(status.error().text()));
    return;
  }
  programFolder_ = programFolder;
  accept();
}

}  // namespace vel
