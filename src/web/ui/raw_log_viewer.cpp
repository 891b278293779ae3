#include "web/ui/raw_log_viewer.h"

#include <QCloseEvent>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QScreen>
#include <QWindow>
#include <algorithm>
#include <cmath>

#include "core/file.h"
#include "core/helpers.h"
#include "core/ui/plain_text.h"
#include "core/ui/qt_desktop.h"
#include "core/ui/twips.h"
#include "web/ui/web_access.h"

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
constexpr int kShowMilliseconds = 1000;
// Further away no screen stands; keeps a damaged settings file from overflows.
constexpr double kFarthest = 1'000'000;

int wholeTwips(double twips, int otherwise) {
  if (!std::isfinite(twips)) return otherwise;
  return static_cast<int>(std::lround(std::clamp(twips, -kFarthest, kFarthest)));
}

// The settings hold single-precision numbers.
double single(int twips) { return static_cast<double>(static_cast<float>(twips)); }

}  // namespace

RawLogViewer::RawLogViewer(const Context& context, WebAccess& web) : context_(context) {
  setObjectName(QStringLiteral("Form3"));
  text_ = new FindableText(this);
  text_->setObjectName(QStringLiteral("Text1"));
  text_->setAccessibleName(tr("Messages"));
  text_->setToolTip(tr("The aircraft's messages; Ctrl+F finds text\n機体別の受信ログ"));
  export_ = new KmlExport(context.desktop, web, context.folders.program / "temp.kml", this);
  buttons_ = makeButtonFrame();
  setTabOrder(text_, sendToMap_);
  placement_ = new OuterPlacement(*this);

  connect(placement_, &OuterPlacement::settled, this, [this] {
    // The frame may have come without a change of size.
    Form_Resize();
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
  const auto makeButton = [&](const QString& text, const QString& name, const QString& toolTip,
                              void (RawLogViewer::*handler)()) {
    auto* button = new QPushButton(text, frame);
    button->setObjectName(name);
    button->setAccessibleName(toolTip.section(QLatin1Char('\n'), 0, 0));
    button->setToolTip(toolTip);
    connect(button, &QPushButton::clicked, this, handler);
    return button;
  };
  sendToMap_ = makeButton(QStringLiteral("Send to QZ2GE && Open with Google Earth"),
                          QStringLiteral("Command1"),
                          tr("Converts the positions in this log to temp.kml and opens it\n"
                             "ログの位置情報をKMLに変換して開く"),
                          &RawLogViewer::Command1_Click);
  shortened_ = new QLabel(frame);
  shortened_->setObjectName(QStringLiteral("Label1"));
  shortened_->setToolTip(
      tr("The log goes on; only its beginning is read\nログの先頭部分のみ表示しています"));
  progress_ = new QProgressBar(frame);
  progress_->setObjectName(QStringLiteral("ProgressBar1"));
  progress_->setAccessibleName(tr("Progress of the KML export"));
  progress_->setToolTip(tr("Progress of the KML export\nKML出力の進行状況"));
  progress_->setMinimumWidth(kProgressWidth);
  progress_->setMaximumWidth(2 * kProgressWidth);
  cancel_ =
      makeButton(QStringLiteral("Cancel"), QStringLiteral("Command3"),
                 tr("Stops the KML export\nKML出力を中止する"), &RawLogViewer::Command3_Click);
  QPushButton* close =
      makeButton(QStringLiteral("Close"), QStringLiteral("Command2"),
                 tr("Closes this window\nこの画面を閉じる"), &RawLogViewer::Command2_Click);

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
  path_ = file;
  if (!load()) {
    sayNotFound();
    return;
  }
  // The file was read just now: the activation that follows need not.
  sinceShowLog_.start();
  focus_ = Focus::here;
  if (isMinimized()) setWindowState(windowState() & ~Qt::WindowMinimized);
  show();
  raise();
  activateWindow();
}

bool RawLogViewer::load() {
  setWindowTitle(QStringLiteral("Log browser - ") + plainWindowTitle(toQString(nativeText(path_))));
  RawLog log;
  Status read = ErrorNumber::fileNotFound;
  if (fileExists(path_)) read = readRawLog(path_, context_.encoding, log);
  const bool missing = !read && (read.error().number == ErrorNumber::fileNotFound ||
                                 read.error().number == ErrorNumber::pathNotFound);
  if (missing) {
    text_->showText({});
    return false;
  }
  log_ = std::move(log);
  // Where nothing could be read, nothing can be said of the file's form.
  const bool nothingRead = !read && log_.lines == 0;
  text_->showText(nothingRead ? QString() : toQString(shownText(log_)));
  shortened_->setText(
      log_.more ? tr("First %L1 lines only").arg(static_cast<qulonglong>(log_.lines)) : QString());
  showExportRunning(export_->isRunning());
  if (!read) context_.desktop.showMessage(read.error().text());
  return true;
}

void RawLogViewer::sayNotFound() {
  context_.desktop.showMessage(kNoRawLog);
  close();
}

void RawLogViewer::Form_Load() {
  const Settings& env = context_.settings;
  const Settings designed;
  const auto whole = [](double twips, double otherwise) {
    return wholeTwips(twips, static_cast<int>(otherwise));
  };
  // A window beyond all screens could not be used, and a damaged size would
  // take all memory.
  const QSize screens = screen()->virtualSize();
  const QSize size = QSize(whole(env.env_Form3_Width, designed.env_Form3_Width),
                           whole(env.env_Form3_Height, designed.env_Form3_Height))
                         .boundedTo(screens * kTwipsPerPixel);
  normalPlace_ = NormalPlace();
  placement_->place(QRect(QPoint(whole(env.env_Form3_Left, designed.env_Form3_Left),
                                 whole(env.env_Form3_Top, designed.env_Form3_Top)),
                          size));
}

void RawLogViewer::Form_Activate() {
  // A message box of the reading itself lets events run.
  if (loading_ || !isVisible()) return;
  loading_ = true;
  if (!load()) sayNotFound();
  loading_ = false;
}

void RawLogViewer::Form_Resize() {
  const int height = outerTwips(*this).height();
  const int width = outerTwips(*this).width();
  const int textWidth = toPixels(MaxOf(0, width - kTextWidthOffset));
  const int side = MaxOf(0, (this->width() - textWidth) / 2);
  // A desktop with a tall title bar leaves less below the button frame's top
  // than the buttons need: the frame, and the text with it, give way then.
  const int buttonsHeight = buttons_->sizeHint().height();
  const int buttonsTop = MinOf(toPixels(height - kButtonsOffset), this->height() - buttonsHeight);
  const int raised = toPixels(height - kButtonsOffset) - buttonsTop;
  text_->setGeometry(side, kTextTop, textWidth,
                     MaxOf(0, toPixels(height - kTextHeightOffset) - raised));
  buttons_->setGeometry(side, buttonsTop, textWidth,
                        MaxOf(buttonsHeight, this->height() - buttonsTop - kTextTop));
}

void RawLogViewer::recordPlace() {
  if (!isVisible() || isMinimized() || placement_->isSettling()) return;
  if (isNormal(*this)) {
    normalPlace_.record(outerTwips(*this));
  } else {
    normalPlace_.windowMaximised(outerTwips(*this).size());
  }
}

void RawLogViewer::Form_Unload() {
  export_->cancel();
  recordPlace();
  const QRect place = normalPlace_.latest();
  if (place.isNull()) return;
  Settings& env = context_.settings;
  env.env_Form3_Top = single(place.y());
  env.env_Form3_Left = single(place.x());
  env.env_Form3_Height = single(place.height());
  env.env_Form3_Width = single(place.width());
}

void RawLogViewer::Command1_Click() { export_->start(rawText()); }

void RawLogViewer::Command2_Click() { close(); }

void RawLogViewer::Command3_Click() { export_->cancel(); }

void RawLogViewer::showExportRunning(bool running) {
  // Keyboard users come back to the button they pressed.
  if (!running && cancel_->hasFocus()) sendToMap_->setFocus();
  progress_->setRange(0, 0);
  progress_->setVisible(running);
  cancel_->setVisible(running);
  shortened_->setVisible(!running && !shortened_->text().isEmpty());
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
  const bool justShown = sinceShowLog_.isValid() && sinceShowLog_.elapsed() < kShowMilliseconds;
  sinceShowLog_.invalidate();
  if (comingBack && !justShown && isVisible()) {
    QMetaObject::invokeMethod(this, &RawLogViewer::Form_Activate, Qt::QueuedConnection);
  }
}

void RawLogViewer::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  Form_Resize();
  recordPlace();
}

void RawLogViewer::moveEvent(QMoveEvent* event) {
  QWidget::moveEvent(event);
  recordPlace();
}

void RawLogViewer::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  if (event->spontaneous()) return;
  Form_Load();
  placement_->windowShown();
  Form_Resize();
}

void RawLogViewer::hideEvent(QHideEvent* event) {
  QWidget::hideEvent(event);
  if (!event->spontaneous()) placement_->windowHidden();
}

void RawLogViewer::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() != QEvent::WindowStateChange || !isVisible()) return;
  Form_Resize();
}

void RawLogViewer::closeEvent(QCloseEvent* event) {
  event->accept();
  Form_Unload();
}

RawLogs::RawLogs(const Context& context, WebAccess& web) : context_(context), web_(web) {}

void RawLogs::close() {
  if (viewer_ != nullptr) viewer_->close();
}

void RawLogs::open(const std::string& name) {
  if (!isSafeFileName(name)) {
    context_.desktop.showMessage(kNoRawLog);
    close();
    return;
  }
  if (viewer_ == nullptr) viewer_ = std::make_unique<RawLogViewer>(context_, web_);
  viewer_->showLog(fileIn(context_.folders.eachLogs, name + ".log"));
}

}  // namespace vel
