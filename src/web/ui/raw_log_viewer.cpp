#include "web/ui/raw_log_viewer.h"

#include <QCloseEvent>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QScreen>
#include <QWindow>
#include <algorithm>
#include <cmath>
#include <memory>
#include <utility>

#include "core/file.h"
#include "core/helpers.h"
#include "core/ui/bring_to_front.h"
#include "core/ui/plain_text.h"
#include "core/ui/qt_desktop.h"
#include "core/ui/twips.h"
#include "web/ui/own_site.h"

namespace vel {
namespace {

// Offsets from the window's outer size, in twips.
constexpr int kTextWidthOffset = 360;
constexpr int kTextHeightOffset = 975;
constexpr int kButtonsOffset = 750;

constexpr int kTextTop = 7;  // pixels
constexpr int kSmallestHeight = 3000;
constexpr int kProgressWidth = 110;
// The activation that follows a look-up comes within this time.
constexpr std::chrono::seconds kShowTime{1};
// Further away no screen stands; keeps a damaged settings file from overflows.
constexpr double kFarthest = 1'000'000;

int wholeTwips(double twips, int otherwise) {
  if (!std::isfinite(twips)) return otherwise;
  return static_cast<int>(std::lround(std::clamp(twips, -kFarthest, kFarthest)));
}

QString captionOf(const std::string& path) {
  return QStringLiteral("Log browser - ") + plainWindowTitle(toQString(path));
}

// The settings hold single-precision numbers.
double single(int twips) { return static_cast<double>(static_cast<float>(twips)); }

}  // namespace

RawLogViewer::RawLogViewer(const Context& context, OwnSite& site)
    : context_(context), reading_(context.jobs), filling_(context.jobs) {
  setObjectName(QStringLiteral("Form3"));
  text_ = new FindableText(this);
  text_->setObjectName(QStringLiteral("Text1"));
  text_->setAccessibleName(tr("Messages"));
  text_->setToolTip(tr("The aircraft's messages; Ctrl+F finds text\n機体別の受信ログ"));
  export_ = new KmlExport(context, site, this);
  buttons_ = makeButtonFrame();
  setTabOrder(text_, sendToMap_);
  placement_ = new OuterPlacement(*this);

  connect(placement_, &OuterPlacement::settled, this, [this] {
    // The frame may have come without a change of size.
    layOutFrames();
    recordPlace();
  });
  connect(export_, &KmlExport::started, this, [this] { showExportRunning(true); });
  connect(export_, &KmlExport::progressed, this, &RawLogViewer::showProgress);
  connect(export_, &KmlExport::ended, this, [this] { showExportRunning(false); });
  connect(qGuiApp, &QGuiApplication::focusWindowChanged, this, &RawLogViewer::focusMoved);

  const int margins = toPixels(kTextWidthOffset);
  showExportRunning(true);
  setMinimumSize(buttons_->sizeHint().width() + margins, toPixels(kSmallestHeight));
  showExportRunning(false);
}

RawLogViewer::~RawLogViewer() { disconnect(qGuiApp, nullptr, this, nullptr); }

QWidget* RawLogViewer::makeButtonFrame() {
  auto* frame = new QWidget(this);
  frame->setObjectName(QStringLiteral("Frame1"));
  const auto makeButton = [&](const QString& text, const QString& name, const QString& toolTip) {
    auto* button = new QPushButton(text, frame);
    button->setObjectName(name);
    button->setAccessibleName(toolTip.section(QLatin1Char('\n'), 0, 0));
    button->setToolTip(toolTip);
    return button;
  };
  sendToMap_ = makeButton(QStringLiteral("Send to QZ2GE && Open with Google Earth"),
                          QStringLiteral("Command1"),
                          tr("Converts the positions in this log to temp.kml and opens it\n"
                             "ログの位置情報をKMLに変換して開く"));
  connect(sendToMap_, &QPushButton::clicked, this, &RawLogViewer::exportLog);
  shortened_ = new QLabel(frame);
  shortened_->setObjectName(QStringLiteral("Label1"));
  progress_ = new QProgressBar(frame);
  progress_->setObjectName(QStringLiteral("ProgressBar1"));
  progress_->setAccessibleName(tr("Progress of the KML export"));
  progress_->setToolTip(tr("Progress of the KML export\nKML出力の進行状況"));
  progress_->setMinimumWidth(kProgressWidth);
  progress_->setMaximumWidth(2 * kProgressWidth);
  cancel_ = makeButton(QStringLiteral("Cancel"), QStringLiteral("Command3"),
                       tr("Stops the KML export\nKML出力を中止する"));
  connect(cancel_, &QPushButton::clicked, export_, &KmlExport::cancel);
  QPushButton* close = makeButton(QStringLiteral("Close"), QStringLiteral("Command2"),
                                  tr("Closes this window\nこの画面を閉じる"));
  connect(close, &QPushButton::clicked, this, &QWidget::close);

  auto* line = new QHBoxLayout(frame);
  line->setContentsMargins(0, 0, 0, 0);
  line->addWidget(sendToMap_);
  line->addWidget(progress_, 1);
  line->addWidget(cancel_);
  line->addWidget(shortened_);
  line->addStretch(1);
  line->addWidget(close);
  return frame;
}

void RawLogViewer::showLog(const std::filesystem::path& file) {
  // The text of another log goes at once; that of the same one may go on.
  if (file != path_) text_->takeText({});
  path_ = file;
  if (!read()) return;
  // The file is being read already: the activation that follows need not.
  shownAt_ = context_.desktop.moment();
  focus_ = Focus::here;
  bringToFront(*this);
}

void RawLogViewer::showMissingLog(const std::filesystem::path& folder, const std::string& name) {
  path_.clear();
  setWindowTitle(captionOf(nativeText(folder / "") + name));
  showMissing();
}

bool RawLogViewer::read() {
  setWindowTitle(captionOf(nativeText(path_)));
  if (!fileExists(path_)) {
    showMissing();
    return false;
  }
  filling_.stop();
  reading_.start(std::make_unique<RawLogRead>(path_, context_.encoding, read_),
                 {.ended = [this](const Status& outcome) { takeRead(outcome); }});
  return true;
}

void RawLogViewer::takeRead(const Status& outcome) {
  const bool missing = !outcome && (outcome.error().number == ErrorNumber::fileNotFound ||
                                    outcome.error().number == ErrorNumber::pathNotFound);
  if (missing) {
    showMissing();
    return;
  }
  log_ = std::exchange(read_, {});
  // Where nothing could be read, nothing can be said of the file's form.
  const bool nothingRead = !outcome && log_.lines == 0;
  text_->takeText(nothingRead ? std::string() : shownText(log_));
  filling_.start(makeJob([this](Job::Clock::time_point deadline) -> Result<JobProgress> {
                   return text_->fill(deadline) ? JobProgress::more : JobProgress::done;
                 }),
                 {.ended = [this](const Status&) { showWantedMessage(); }});
  showExtent(!nothingRead && log_.messageStarts.empty());
  showExportRunning(export_->isRunning());
  if (std::exchange(exportWhenRead_, false)) export_->start(log_.rawText);
  if (!outcome) context_.desktop.showMessage(outcome.error().text());
}

void RawLogViewer::showExtent(bool hasNoMessage) {
  if (hasNoMessage) {
    shortened_->setText(tr("No message yet まだメッセージがありません"));
    shortened_->setToolTip(
        tr("Bring this window to the front again when the decoder has written one\n"
           "受信後にこの画面を前面に戻すと表示されます"));
    return;
  }
  shortened_->setText(toQString(cutText(log_)));
  shortened_->setToolTip(
      tr("The log goes on; only its beginning is read\nログの先頭部分のみ表示しています"));
}

void RawLogViewer::showWantedMessage() {
  const auto message = std::exchange(wantedMessage_, std::nullopt);
  if (message && *message < log_.messageStarts.size()) text_->goTo(log_.messageStarts[*message]);
}

void RawLogViewer::showMissing() {
  wantedMessage_.reset();
  reading_.stop();
  filling_.stop();
  exportWhenRead_ = false;
  text_->takeText({});
  context_.desktop.showMessage(kNoRawLog);
  close();
}

void RawLogViewer::takePlaceFromSettings() {
  const Settings& env = context_.settings;
  const Settings designed;
  const auto whole = [](double twips, double otherwise) {
    return wholeTwips(twips, static_cast<int>(otherwise));
  };
  // A window beyond all screens could not be used, and a damaged size would
  // take all memory. One that grows only after it was placed would stand
  // elsewhere than it was wanted.
  const QSize screens = screen()->virtualSize();
  const QSize size = QSize(whole(env.env_Form3_Width, designed.env_Form3_Width),
                           whole(env.env_Form3_Height, designed.env_Form3_Height))
                         .boundedTo(screens * kTwipsPerPixel)
                         .expandedTo(minimumSize() * kTwipsPerPixel);
  normalPlace_ = NormalPlace();
  placement_->place(QRect(QPoint(whole(env.env_Form3_Left, designed.env_Form3_Left),
                                 whole(env.env_Form3_Top, designed.env_Form3_Top)),
                          size));
}

void RawLogViewer::readAgain() {
  if (isVisible()) static_cast<void>(read());
}

void RawLogViewer::layOutFrames() {
  const int height = outerTwips(*this).height();
  const int width = outerTwips(*this).width();
  const int textWidth = toPixels(std::max(0, width - kTextWidthOffset));
  const int side = std::max(0, (this->width() - textWidth) / 2);
  // A desktop with a tall title bar leaves less below the button frame's top
  // than the buttons need: the frame, and the text with it, give way then.
  const int buttonsHeight = buttons_->sizeHint().height();
  const int buttonsTop =
      std::min(toPixels(height - kButtonsOffset), this->height() - buttonsHeight);
  const int raised = toPixels(height - kButtonsOffset) - buttonsTop;
  text_->setGeometry(side, kTextTop, textWidth,
                     std::max(0, toPixels(height - kTextHeightOffset) - raised));
  buttons_->setGeometry(side, buttonsTop, textWidth,
                        std::max(buttonsHeight, this->height() - buttonsTop - kTextTop));
}

void RawLogViewer::recordPlace() {
  if (!isVisible() || isMinimized() || placement_->isSettling()) return;
  if (isNormal(*this)) {
    normalPlace_.record(outerTwips(*this), context_.desktop.moment());
  } else {
    normalPlace_.windowMaximised(outerTwips(*this).size(), context_.desktop.moment());
  }
}

void RawLogViewer::givePlaceToSettings() {
  recordPlace();
  const QRect place = normalPlace_.latest();
  if (place.isNull()) return;
  Settings& env = context_.settings;
  env.env_Form3_Top = single(place.y());
  env.env_Form3_Left = single(place.x());
  env.env_Form3_Height = single(place.height());
  env.env_Form3_Width = single(place.width());
}

void RawLogViewer::exportLog() {
  if (reading_.isRunning()) {
    exportWhenRead_ = true;
  } else {
    export_->start(log_.rawText);
  }
}

void RawLogViewer::showExportRunning(bool running) {
  // Keyboard users come back to the button they pressed.
  if (!running && cancel_->hasFocus()) sendToMap_->setFocus();
  progress_->setRange(0, 0);
  progress_->setVisible(running);
  cancel_->setVisible(running);
  shortened_->setVisible(!running && !shortened_->text().isEmpty());
  // Larger letters need a wider window.
  const int needed = buttons_->sizeHint().width() + toPixels(kTextWidthOffset);
  if (needed > minimumWidth()) setMinimumWidth(needed);
}

void RawLogViewer::showProgress(qint64 done, qint64 total) {
  constexpr int kSteps = 1000;
  progress_->setRange(0, total > 0 ? kSteps : 0);
  if (total > 0) progress_->setValue(static_cast<int>(done * kSteps / total));
}

void RawLogViewer::focusMoved(const QWindow* focused) {
  if (focused == nullptr) {
    // A dialog that closes leaves no window with the focus for a moment.
    if (focus_ == Focus::here) focus_ = Focus::elsewhere;
    return;
  }
  if (focused != windowHandle()) {
    const QWindow* owner = focused->transientParent();
    const bool own = owner != nullptr && owner == windowHandle();
    focus_ = own ? Focus::ownDialog : Focus::elsewhere;
    return;
  }
  const bool comingBack = focus_ == Focus::elsewhere;
  focus_ = Focus::here;
  const bool justShown = shownAt_ && context_.desktop.moment() - *shownAt_ < kShowTime;
  shownAt_.reset();
  if (comingBack && !justShown && isVisible()) {
    QMetaObject::invokeMethod(this, &RawLogViewer::readAgain, Qt::QueuedConnection);
  }
}

void RawLogViewer::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  layOutFrames();
  recordPlace();
}

void RawLogViewer::moveEvent(QMoveEvent* event) {
  QWidget::moveEvent(event);
  recordPlace();
}

void RawLogViewer::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  if (event->spontaneous()) return;
  takePlaceFromSettings();
  placement_->windowShown();
  layOutFrames();
}

void RawLogViewer::hideEvent(QHideEvent* event) {
  QWidget::hideEvent(event);
  if (!event->spontaneous()) placement_->windowHidden();
}

void RawLogViewer::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() != QEvent::WindowStateChange || !isVisible()) return;
  layOutFrames();
}

void RawLogViewer::closeEvent(QCloseEvent* event) {
  event->accept();
  reading_.stop();
  filling_.stop();
  exportWhenRead_ = false;
  export_->cancel();
  givePlaceToSettings();
}

}  // namespace vel
