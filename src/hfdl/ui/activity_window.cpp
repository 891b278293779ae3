#include "hfdl/ui/activity_window.h"

#include <QHBoxLayout>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QSignalBlocker>
#include <QToolTip>
#include <QVBoxLayout>
#include <memory>
#include <utility>

#include "core/file.h"
#include "core/text.h"
#include "core/ui/plain_text.h"
#include "core/ui/qt_desktop.h"
#include "core/ui/screen_room.h"
#include "hfdl/activity_chart.h"

namespace vel {
namespace {

using std::chrono::days;
using std::chrono::local_seconds;

constexpr QSize kDesignedSize(960, 560);
constexpr QSize kLeastPicture(620, 240);
// What the window has beside and above the chart, about.
constexpr QSize kControls(20, 60);

// A name that came over the air may be wider than the screen.
constexpr int kWidestName = 240;

const QString kAllStations = QStringLiteral("ALL");
const QString kChooserTip = QStringLiteral("Station whose messages are counted\n集計する地上局");

local_seconds endOfDay(local_seconds moment) { return std::chrono::floor<days>(moment) + days(1); }

}  // namespace

ActivityWindow::ActivityWindow(const Context& context, std::function<std::string()> shownLog)
    : ChartWindow(context), shownLog_(std::move(shownLog)), count_(context.jobs) {
  setObjectName(QStringLiteral("ActivityChart"));
  setWindowTitle(QStringLiteral("VEL Ground stations"));
  buildControls();
  resize(kDesignedSize);
}

void ActivityWindow::buildControls() {
  station_ = new QComboBox(this);
  station_->setObjectName(QStringLiteral("Combo1"));
  station_->setAccessibleName(tr("Ground station"));
  station_->setToolTip(kChooserTip);
  station_->setSizeAdjustPolicy(QComboBox::AdjustToContents);
  auto* caption = new QLabel(tr("&Station"), this);
  caption->setBuddy(station_);

  upToNow_ = makeOption(QStringLiteral("Option1(0)"));
  upToNow_->setText(tr("C&urrent"));
  upToNow_->setAccessibleName(tr("The last 24 hours"));
  upToNow_->setToolTip(tr("The 24 hours up to now\n現在までの24時間"));
  dayOfLog_ = makeOption(QStringLiteral("Option1(1)"));
  dayOfLog_->setAccessibleName(tr("The day of the shown log"));
  dayOfLog_->setToolTip(
      tr("The day of the log that the HFDL browser shows\nHFDLブラウザで表示中のログの1日"));
  upToNow_->setChecked(true);

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
  picture_->setMinimumSize(kLeastPicture.boundedTo(screenRoom(*this) - kControls));
  picture_->installEventFilter(this);

  auto* row = new QHBoxLayout;
  row->addWidget(caption);
  row->addWidget(station_);
  row->addSpacing(12);
  row->addWidget(upToNow_);
  row->addWidget(dayOfLog_);
  row->addStretch();
  row->addWidget(refresh);

  auto* rows = new QVBoxLayout(this);
  rows->setContentsMargins(6, 6, 6, 6);
  rows->addLayout(row);
  rows->addWidget(picture_, 1);

  connect(station_, &QComboBox::currentIndexChanged, this, &ActivityWindow::chooseStation);
  connect(refresh, &QPushButton::clicked, this, &ActivityWindow::fmtDataLoad);
  connect(key, &QAction::triggered, this, &ActivityWindow::fmtDataLoad);
}

QRadioButton* ActivityWindow::makeOption(const QString& name) {
  auto* option = new QRadioButton(this);
  option->setObjectName(name);
  connect(option, &QRadioButton::clicked, this, &ActivityWindow::fmtDataLoad);
  return option;
}

void ActivityWindow::whenOpened() {
  fillChooser({}, std::nullopt);
  counts_ = {};
  reference_ = currentReference(desktop().now());
  const auto end = dayReference(shownLog_());
  const bool otherDay = end && *end != endOfDay(desktop().now());
  (otherDay ? dayOfLog_ : upToNow_)->setChecked(true);
  fmtDataLoad();
}

void ActivityWindow::whenActivated() { drowGraph(); }

void ActivityWindow::whenClosed() {
  count_.stop();
  counts_ = {};
}

// One that is chosen while the log is being counted is taken back at the end.
void ActivityWindow::chooseStation() {
  if (!count_.isRunning()) fmtDataLoad();
}

ActivityQuery ActivityWindow::query(const std::string& log) const {
  ActivityQuery query;
  query.reference = upToNow_->isChecked() ? currentReference(desktop().now()) : dayReference(log);
  const int station = station_->currentIndex();
  if (station > 0) query.station = stations_[static_cast<std::size_t>(station) - 1];
  return query;
}

void ActivityWindow::fmtDataLoad() {
  count_.stop();
  const std::string log = shownLog_();
  nameDay(log);
  const ActivityQuery wanted = query(log);
  const local_seconds reference = wanted.reference.value_or(endOfDay(desktop().now()));
  if (log.empty()) {
    showNothing(reference);
    return;
  }
  Result<InputFile> file = InputFile::open(context().folders.logs / toPath(log));
  if (!file) {
    showNothing(reference);
    desktop().showMessage(file.error().text());
    return;
  }
  auto load = std::make_unique<ActivityLoad>(*std::move(file), context().encoding, wanted);
  // The slot keeps the load until the call returns.
  const ActivityLoad& counted = *load;
  count_.start(std::move(load), {.ended = [this, &counted, reference](const Status& status) {
                 finishLoad(counted, reference, status);
               }});
}

void ActivityWindow::finishLoad(const ActivityLoad& load, local_seconds reference,
                                const Status& status) {
  counts_ = load.counts();
  reference_ = load.reference().value_or(reference);
  fillChooser(load.stations(), load.countedStation());
  drowGraph();
  if (!status) desktop().showMessage(status.error().text());
  const std::string excess = load.excessText();
  if (!excess.empty()) desktop().showMessage(excess);
}

void ActivityWindow::showNothing(local_seconds reference) {
  counts_ = {};
  reference_ = reference;
  fillChooser({}, std::nullopt);
  drowGraph();
}

void ActivityWindow::fillChooser(const std::vector<StationTotal>& stations,
                                 std::optional<std::size_t> chosen) {
  const QSignalBlocker quiet(station_);
  station_->clear();
  station_->addItem(kAllStations);
  station_->setToolTip(kChooserTip);
  stations_.clear();
  for (const StationTotal& station : stations) {
    const QString name = toQString(station.name).trimmed();
    const QString shown =
        station_->fontMetrics().elidedText(shownText(name), Qt::ElideRight, kWidestName);
    const int entry = station_->count();
    station_->addItem(QStringLiteral("%1  %2").arg(shown, QString::number(station.messages)));
    station_->setItemData(entry, plainToolTip(name), Qt::ToolTipRole);
    station_->setItemData(entry, name, Qt::AccessibleTextRole);
    stations_.push_back(station.name);
  }
  if (!chosen) return;
  station_->setCurrentIndex(static_cast<int>(*chosen) + 1);
  const QString name = toQString(stations_[*chosen]).trimmed();
  station_->setToolTip(plainToolTip(QString(name + QLatin1Char('\n') + kChooserTip)));
}

void ActivityWindow::nameDay(const std::string& log) {
  setWindowTitle(
      QStringLiteral("VEL Ground stations") +
      (log.empty() ? QString() : QStringLiteral(" - ") + plainWindowTitle(toQString(log))));
  const auto end = dayReference(log);
  if (!end) {
    dayOfLog_->setText(tr("&Day of the log"));
    return;
  }
  QString digits = toQString(dayDigits(std::chrono::floor<days>(*end - days(1))));
  digits.insert(6, QLatin1Char('/')).insert(4, QLatin1Char('/'));
  dayOfLog_->setText(tr("&Day %1").arg(digits));
}

void ActivityWindow::drowGraph() {
  const int station = station_->currentIndex();
  const std::string name =
      station > 0 ? stations_[static_cast<std::size_t>(station) - 1] : kAllStations.toStdString();
  const ActivityTitle title{std::string(Trim(name)), chartedTime(reference_)};
  picture_->setChart([this, title](double width, double height, double ratio) {
    return vel::drowGraph(counts_, reference_, width, height, ratio, title);
  });
  // A message may follow at once: the chart is there before it.
  picture_->repaint();
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
