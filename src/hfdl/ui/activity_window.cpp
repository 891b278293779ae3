#include "hfdl/ui/activity_window.h"

#include <QHBoxLayout>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QSignalBlocker>
#include <QToolTip>
#include <QVBoxLayout>
#include <utility>

#include "core/file.h"
#include "core/ui/plain_text.h"
#include "core/ui/qt_desktop.h"
#include "hfdl/activity_chart.h"

namespace vel {
namespace {

using std::chrono::days;
using std::chrono::local_seconds;

constexpr QSize kDesignedSize(960, 560);
constexpr QSize kLeastPicture(620, 240);

constexpr std::size_t kCurrent = 0;
constexpr std::size_t kDay = 1;

local_seconds endOfDay(local_seconds moment) { return std::chrono::floor<days>(moment) + days(1); }

}  // namespace

ActivityWindow::ActivityWindow(const Context& context, std::function<std::string()> shownLog)
    : ChartWindow(context), shownLog_(std::move(shownLog)) {
  setObjectName(QStringLiteral("ActivityChart"));
  setWindowTitle(QStringLiteral("VEL Ground stations"));
  buildControls();
  resize(kDesignedSize);
}

void ActivityWindow::buildControls() {
  station_ = new QComboBox(this);
  station_->setObjectName(QStringLiteral("Combo1"));
  station_->setAccessibleName(tr("Ground station"));
  station_->setToolTip(tr("Station whose messages are counted\n集計する地上局"));
  station_->setSizeAdjustPolicy(QComboBox::AdjustToContents);
  auto* caption = new QLabel(tr("&Station"), this);
  caption->setBuddy(station_);

  option_[kCurrent] = new QRadioButton(tr("C&urrent"), this);
  option_[kCurrent]->setAccessibleName(tr("The last 24 hours"));
  option_[kCurrent]->setToolTip(tr("The 24 hours up to now\n現在までの24時間"));
  option_[kDay] = new QRadioButton(this);
  option_[kDay]->setAccessibleName(tr("The day of the shown log"));
  option_[kDay]->setToolTip(
      tr("The day of the log that the HFDL browser shows\nHFDLブラウザで表示中のログの1日"));
  option_[kCurrent]->setChecked(true);

  auto* refresh = new QPushButton(tr("&Reflesh"), this);
  refresh->setObjectName(QStringLiteral("Command1"));
  refresh->setAccessibleName(tr("Count the log again"));
  refresh->setToolTip(tr("Count the log again (F5)\nログを集計し直す"));
  auto* key = new QAction(this);
  key->setShortcut(QKeySequence(Qt::Key_F5));
  addAction(key);

  picture_ = new ChartPicture(desktop(), QStringLiteral("ground_stations.png"), this);
  picture_->setAccessibleName(tr("Chart of the ground stations' activity"));
  picture_->setContextMenuPolicy(Qt::ActionsContextMenu);
  picture_->setMinimumSize(kLeastPicture);
  picture_->installEventFilter(this);

  auto* row = new QHBoxLayout;
  row->addWidget(caption);
  row->addWidget(station_);
  row->addSpacing(12);
  for (std::size_t i = 0; i < option_.size(); ++i) {
    option_[i]->setObjectName(QStringLiteral("Option1(%1)").arg(i));
    row->addWidget(option_[i]);
    connect(option_[i], &QRadioButton::clicked, this, &ActivityWindow::Option1_Click);
  }
  row->addStretch();
  row->addWidget(refresh);

  auto* rows = new QVBoxLayout(this);
  rows->setContentsMargins(6, 6, 6, 6);
  rows->addLayout(row);
  rows->addWidget(picture_, 1);

  connect(station_, &QComboBox::currentIndexChanged, this, &ActivityWindow::Combo1_Click);
  connect(refresh, &QPushButton::clicked, this, &ActivityWindow::Command1_Click);
  connect(key, &QAction::triggered, this, &ActivityWindow::Command1_Click);
}

void ActivityWindow::Form_Load() {
  {
    const QSignalBlocker quiet(station_);
    station_->clear();
    station_->addItem(QStringLiteral("ALL"));
  }
  stations_.clear();
  counts_ = {};
  reference_ = currentReference(desktop().now());
  option_[kCurrent]->setChecked(true);
  fmtDataLoad();
}

void ActivityWindow::Form_Activate() { drowGraph(); }

void ActivityWindow::Command1_Click() {
  fmtDataLoad();
  drowGraph();
}

void ActivityWindow::Option1_Click() {
  fmtDataLoad();
  drowGraph();
}

void ActivityWindow::Combo1_Click() {
  if (loading_) return;
  fmtDataLoad();
  drowGraph();
}

void ActivityWindow::fmtDataLoad() {
  if (loading_) {
    restart_ = true;
    return;
  }
  loading_ = true;
  do {
    restart_ = false;
    loadOnce();
  } while (restart_ && isOpen());
  loading_ = false;
}

ActivityQuery ActivityWindow::query(const std::string& log) const {
  ActivityQuery query;
  query.reference =
      option_[kCurrent]->isChecked() ? currentReference(desktop().now()) : dayReference(log);
  const int station = station_->currentIndex();
  if (station > 0) query.station = stations_[static_cast<std::size_t>(station) - 1];
  return query;
}

void ActivityWindow::loadOnce() {
  const std::string log = shownLog_();
  const int station = station_->currentIndex();
  const ActivityQuery wanted = query(log);
  nameDay(log);
  counts_ = {};
  reference_ = wanted.reference.value_or(endOfDay(desktop().now()));
  if (log.empty()) return;

  Result<InputFile> file = InputFile::open(context().folders.logs / toPath(log));
  if (!file) {
    desktop().showMessage(file.error().text());
    return;
  }
  ActivityLoad load(*std::move(file), context().encoding, wanted, stations_);
  Result<bool> more = load.step();
  while (more && *more) {
    desktop().processEvents();
    if (restart_ || !isOpen()) return;
    more = load.step();
  }
  take(load, station);
  if (!more) desktop().showMessage(more.error().text());
  const std::string excess = load.excessText();
  if (!excess.empty()) desktop().showMessage(excess);
}

void ActivityWindow::take(const ActivityLoad& load, int station) {
  counts_ = load.counts();
  reference_ = load.reference().value_or(reference_);
  for (std::size_t i = stations_.size(); i < load.stations().size(); ++i) {
    station_->addItem(shownText(toQString(load.stations()[i]).trimmed(), kLongestEntry));
  }
  stations_ = load.stations();
  // One chosen meanwhile is not the one that was counted.
  const QSignalBlocker quiet(station_);
  station_->setCurrentIndex(station);
}

void ActivityWindow::nameDay(const std::string& log) {
  setWindowTitle(
      QStringLiteral("VEL Ground stations") +
      (log.empty() ? QString() : QStringLiteral(" - ") + plainWindowTitle(toQString(log))));
  const auto end = dayReference(log);
  if (!end) {
    option_[kDay]->setText(tr("&Day of the log"));
    return;
  }
  QString digits = toQString(dayDigits(std::chrono::floor<days>(*end - days(1))));
  digits.insert(6, QLatin1Char('/')).insert(4, QLatin1Char('/'));
  option_[kDay]->setText(tr("&Day %1").arg(digits));
}

void ActivityWindow::drowGraph() {
  picture_->setChart([this](double width, double height, double ratio) {
    return vel::drowGraph(counts_, reference_, width, height, ratio);
  });
  desktop().processEvents();
}

bool ActivityWindow::eventFilter(QObject* watched, QEvent* event) {
  if (watched == picture_ && event->type() == QEvent::ToolTip) {
    const auto* help = static_cast<QHelpEvent*>(event);
    const ActivityPlot plot(picture_->width(), picture_->height(), picture_->devicePixelRatioF());
    showSlot(plot.slotAt(help->pos().x(), help->pos().y()), help->pos());
    return true;
  }
  if (watched == picture_ && event->type() == QEvent::KeyPress &&
      moveSlot(static_cast<QKeyEvent*>(event)->key())) {
    return true;
  }
  return ChartWindow::eventFilter(watched, event);
}

void ActivityWindow::showSlot(std::optional<std::size_t> slot, const QPoint& position) {
  if (!slot) {
    QToolTip::hideText();
    return;
  }
  const ActivityPlot plot(picture_->width(), picture_->height(), picture_->devicePixelRatioF());
  const QRectF bar(plot.slotLeft(*slot), plot.top(),
                   plot.slotLeft(*slot + 1) - plot.slotLeft(*slot), plot.base() - plot.top());
  const QString tip = toQString(slotTip(counts_, *slot, reference_));
  QToolTip::showText(picture_->mapToGlobal(position), plainToolTip(tip), picture_,
                     bar.toAlignedRect());
  picture_->setAccessibleDescription(tip);
}

bool ActivityWindow::moveSlot(int key) {
  constexpr std::size_t kLast = ActivityCounts::kReferenceSlot;
  if (key == Qt::Key_Left) {
    keySlot_ = keySlot_ == 0 ? 0 : keySlot_ - 1;
  } else if (key == Qt::Key_Right) {
    keySlot_ = keySlot_ == kLast ? kLast : keySlot_ + 1;
  } else if (key == Qt::Key_Home) {
    keySlot_ = 0;
  } else if (key == Qt::Key_End) {
    keySlot_ = kLast;
  } else {
    return false;
  }
  const ActivityPlot plot(picture_->width(), picture_->height(), picture_->devicePixelRatioF());
  showSlot(keySlot_, QPointF(plot.slotLeft(keySlot_), plot.top()).toPoint());
  return true;
}

}  // namespace vel
