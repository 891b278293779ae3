#include "history/ui/history_window.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMenu>
#include <QShortcut>
#include <QVBoxLayout>
#include <algorithm>
#include <chrono>
#include <utility>

#include "core/file.h"
#include "core/ui/bring_to_front.h"
#include "core/ui/plain_text.h"
#include "core/ui/qt_desktop.h"
#include "core/ui/screen_room.h"
#include "history/line_copy.h"
#include "history/log_place.h"

namespace vel {
namespace {

constexpr QSize kFirstSize{1000, 680};
// On a screen that is lower (pixels), rows stand closer together.
constexpr int kLowScreen = 500;
// The list and the strips follow a search this often, in milliseconds; a list
// that is sorted, or large, less often.
constexpr qint64 kShowInterval = 34;
constexpr std::size_t kLarge = 100'000;
constexpr qint64 kLargeInterval = 200;
constexpr qint64 kWordsInterval = 300;
constexpr int kLongestMenuText = 40;
constexpr std::chrono::milliseconds kCopySlice{10};

StripChoice choiceOf(std::chrono::local_days first, std::chrono::local_days last) {
  return {static_cast<int>(first.time_since_epoch().count()),
          static_cast<int>(last.time_since_epoch().count())};
}

std::chrono::local_days dayOf(int number) {
  return std::chrono::local_days(std::chrono::days(number));
}

QString menuText(const QString& text) { return withoutShortcut(shownText(text, kLongestMenuText)); }

}  // namespace

HistoryWindow::HistoryWindow(const Context& context)
    : context_(context),
      form_(new HistoryForm(this)),
      progress_(new QProgressBar(this)),
      state_(new QLabel(this)),
      words_(new HistoryWords(this)),
      days_(nullptr),
      hours_(nullptr),
      filterText_(nullptr),
      showAll_(nullptr),
      model_(new FoundModel(found_, this)),
      list_(new FoundList(model_, this)),
      problems_(new QLabel(this)),
      search_(context.jobs),
      ordering_(context.jobs),
      opening_(context.jobs),
      copying_(context.jobs) {
  setObjectName(QStringLiteral("HistoryWindow"));
  setWindowTitle(tr("Find in all logs 全日検索"));
  auto* rows = new QVBoxLayout(this);
  if (screenRoom(*this).height() < kLowScreen) {
    rows->setContentsMargins(4, 4, 4, 4);
    rows->setSpacing(2);
  }
  rows->addWidget(form_);
  progress_->setObjectName(QStringLiteral("Progress"));
  progress_->setAccessibleName(tr("Logs searched"));
  progress_->setTextVisible(false);
  progress_->setMaximumWidth(200);
  progress_->hide();
  for (QLabel* label : {state_, problems_}) label->setTextFormat(Qt::PlainText);
  state_->setObjectName(QStringLiteral("State"));
  problems_->setObjectName(QStringLiteral("Problems"));
  problems_->setWordWrap(true);
  problems_->hide();
  auto* stateRow = new QHBoxLayout;
  stateRow->addWidget(progress_);
  stateRow->addWidget(state_, 1);
  rows->addLayout(stateRow);
  rows->addWidget(words_);
  rows->addWidget(makeStrips());
  rows->addWidget(makeFilterRow());
  rows->addWidget(list_, 1);
  rows->addWidget(problems_);

  connect(form_, &HistoryForm::findAsked, this, &HistoryWindow::find);
  connect(form_, &HistoryForm::cancelAsked, this, &HistoryWindow::cancel);
  connect(words_, &HistoryWords::searchAsked, this,
          [this](SearchMeaning meaning, const QString& text) {
            openWith(meaning, text.toStdString());
          });
  connect(words_, &HistoryWords::dayAsked, this, &HistoryWindow::restrictToDay);
  connect(list_, &FoundList::sortAsked, this, &HistoryWindow::sortBy);
  connect(list_, &FoundList::lineOpened, this, &HistoryWindow::openLine);
  connect(list_, &FoundList::copyAsked, this, &HistoryWindow::copyLines);
  connect(list_, &FoundList::copied, this, [this](const QString& text) {
    copying_.stop();
    context_.desktop.setClipboardText(text.toStdString());
  });
  connect(list_, &FoundList::customContextMenuRequested, this, &HistoryWindow::showMenu);
  connect(new QShortcut(QKeySequence::Find, this), &QShortcut::activated, form_,
          &HistoryForm::focusText);
  showStrips();
  showFilter();
  resize(kFirstSize);
}

// Where the program ends it may still be shown: the list asks for the messages
// while it is hidden.
HistoryWindow::~HistoryWindow() { hide(); }

QWidget* HistoryWindow::makeStrips() {
  auto* strips = new QWidget(this);
  auto* row = new QHBoxLayout(strips);
  row->setContentsMargins(0, 0, 0, 0);
  days_ = new StripPicture(context_.desktop, QStringLiteral("days.png"), QStringLiteral("DayStrip"),
                           dayBarText, strips);
  days_->setAccessibleName(tr("Messages of each day"));
  hours_ = new StripPicture(context_.desktop, QStringLiteral("hours.png"),
                            QStringLiteral("HourStrip"), hourBarText, strips);
  hours_->setAccessibleName(tr("Messages of each hour"));
  row->addWidget(days_, 3);
  row->addWidget(hours_, 1);
  connect(days_, &StripPicture::barChosen, this, &HistoryWindow::restrictToDays);
  connect(hours_, &StripPicture::barChosen, this, &HistoryWindow::restrictToHour);
  return strips;
}

QWidget* HistoryWindow::makeFilterRow() {
  auto* filter = new QWidget(this);
  auto* row = new QHBoxLayout(filter);
  row->setContentsMargins(0, 0, 0, 0);
  filterText_ = new QLabel(filter);
  filterText_->setObjectName(QStringLiteral("FilterText"));
  filterText_->setTextFormat(Qt::PlainText);
  showAll_ = new QPushButton(tr("&Show all"), filter);
  showAll_->setObjectName(QStringLiteral("ShowAll"));
  showAll_->setAccessibleName(tr("Show all"));
  showAll_->setToolTip(tr("Shows everything that was found\nすべて表示"));
  row->addWidget(filterText_, 1);
  row->addWidget(showAll_);
  connect(showAll_, &QPushButton::clicked, this, [this] { order({}, sort_); });
  return filter;
}

void HistoryWindow::open() {
  if (!isVisible()) fitToScreen(*this);
  bringToFront(*this);
  form_->focusText();
}

void HistoryWindow::openWith(SearchMeaning meaning, const std::string& text) {
  form_->setSearch(meaning, toQString(text));
  open();
  find();
}

void HistoryWindow::say(const QString& text) { state_->setText(text); }

void HistoryWindow::find() {
  search_.stop();
  ordering_.stop();
  opening_.stop();
  copying_.stop();
  model_->beginClear();
  found_.clear();
  model_->endClear();
  tally_.clear();
  filter_ = {};
  problems_->hide();
  showFound();
  showFilter();
  const auto today = std::chrono::floor<std::chrono::days>(context_.desktop.now());
  const HistoryQuery query = form_->query(today);
  const QueryProblem problem = problemOf(query, context_.encoding);
  progress_->setValue(0);
  progress_->hide();
  form_->setRunning(false);
  if (problem != QueryProblem::none) {
    say(toQString(hintFor(problem)));
    return;
  }
  say(tr("Searching... 検索中..."));
  form_->setRunning(true);
  progress_->show();
  sinceShown_.start();
  auto job = std::make_unique<HistorySearch>(context_.folders, context_.encoding, query, found_);
  // The slot keeps the job for as long as it calls.
  const HistorySearch* search = job.get();
  search_.start(std::move(job),
                {.stepped = [this, search] { searchStepped(*search); },
                 .ended = [this, search](const Status& result) { searchEnded(*search, result); }});
}

void HistoryWindow::cancel() {
  if (!search_.isRunning()) return;
  search_.stop();
  form_->setRunning(false);
  progress_->hide();
  showFound();
  say(tr("Cancelled; found so far 中止しました: %1").arg(found_.size()));
}

void HistoryWindow::searchStepped(const HistorySearch& search) {
  tally_.countNew(found_);
  const bool isLarge = found_.size() > kLarge;
  if (sinceShown_.elapsed() < (isLarge ? kLargeInterval : kShowInterval)) return;
  sinceShown_.restart();
  progress_->setMaximum(std::max(1, static_cast<int>(search.logsInAll())));
  progress_->setValue(static_cast<int>(search.logsRead()));
  showFound();
  say(tr("Searching... 検索中... %1 / %2").arg(search.logsRead()).arg(search.logsInAll()));
}

void HistoryWindow::searchEnded(const HistorySearch& search, const Status& result) {
  form_->setRunning(false);
  progress_->setMaximum(std::max(1, static_cast<int>(search.logsInAll())));
  progress_->setValue(progress_->maximum());
  progress_->hide();
  tally_.countNew(found_);
  showFound();
  QString text = tr("Found %1 in %2 logs.  %2ファイルから%1件見つかりました。")
                     .arg(found_.size())
                     .arg(search.logsInAll());
  if (search.isCutShort()) {
    text += tr(" There is more: choose fewer days.  件数が多すぎます。期間を短くしてください。");
  }
  if (!result) text = toQString(result.error().text());
  say(text);
  const std::string problems = reportOf(search.problems());
  problems_->setText(toQString(problems).remove(QLatin1Char('\r')));
  problems_->setVisible(!problems.empty());
}

void HistoryWindow::showFound() {
  // While the list is being ordered anew, it keeps what it shows.
  if (!ordering_.isRunning()) model_->publish();
  showStrips();
  if (search_.isRunning() && sinceWords_.isValid() && sinceWords_.elapsed() < kWordsInterval)
    return;
  words_->show(tally_);
  sinceWords_.start();
}

void HistoryWindow::showStrips() {
  std::optional<StripChoice> day;
  if (filter_.firstDay) day = choiceOf(*filter_.firstDay, *filter_.lastDay);
  std::optional<StripChoice> hour;
  if (filter_.hour) hour = StripChoice{*filter_.hour, *filter_.hour};
  days_->setStrip([this, day](double width, double height, double ratio) {
    return dayStrip(tally_.days(), day, width, height, ratio);
  });
  hours_->setStrip([this, hour](double width, double height, double ratio) {
    return hourStrip(tally_.hours(), hour, width, height, ratio);
  });
}

void HistoryWindow::order(FoundFilter filter, FoundSort sort) {
  filter_ = filter;
  sort_ = sort;
  showFilter();
  showStrips();
  auto job = std::make_unique<FoundOrdering>(found_, std::move(filter), sort);
  FoundOrdering* const ordering = job.get();
  ordering_.start(std::move(job), {.ended = [this, ordering](const Status&) {
                    model_->setOrder(filter_, sort_, ordering->takeOrder(), ordering->looked());
                    model_->publish();
                  }});
}

void HistoryWindow::sortBy(int column) {
  const bool again = sort_.column == column;
  const FoundSort sort{column, again && !sort_.descending};
  list_->horizontalHeader()->setSortIndicator(
      column, sort.descending ? Qt::DescendingOrder : Qt::AscendingOrder);
  list_->horizontalHeader()->setSortIndicatorShown(true);
  order(filter_, sort);
}

void HistoryWindow::restrictToDays(const StripBar& bar) {
  FoundFilter filter = filter_;
  const auto first = dayOf(bar.first);
  const auto last = dayOf(bar.last);
  if (filter.firstDay == first && filter.lastDay == last) {
    filter.firstDay.reset();
    filter.lastDay.reset();
  } else {
    filter.firstDay = first;
    filter.lastDay = last;
  }
  order(std::move(filter), sort_);
}

void HistoryWindow::restrictToDay(const QString& day) {
  for (const auto& [date, count] : tally_.days()) {
    if (dayText(date) != day.toStdString()) continue;
    FoundFilter filter = filter_;
    filter.firstDay = filter.lastDay = date;
    order(std::move(filter), sort_);
    return;
  }
}

void HistoryWindow::restrictToHour(const StripBar& bar) {
  FoundFilter filter = filter_;
  filter.hour = filter.hour == bar.first ? std::nullopt : std::optional(bar.first);
  order(std::move(filter), sort_);
}

void HistoryWindow::showFilter() {
  QStringList parts;
  if (filter_.firstDay) {
    QString days = toQString(dayText(*filter_.firstDay));
    if (filter_.lastDay != filter_.firstDay) {
      days += QLatin1Char('-') + toQString(dayText(*filter_.lastDay));
    }
    parts << days;
  }
  if (filter_.hour)
    parts << QStringLiteral("%1:00-%1:59").arg(*filter_.hour, 2, 10, QLatin1Char('0'));
  for (const FoundFilter::Value& value : filter_.values) {
    parts << QStringLiteral("%1 = \"%2\"")
                 .arg(model_->headerData(value.column, Qt::Horizontal, Qt::DisplayRole).toString(),
                      shownText(value.text, kLongestMenuText));
  }
  filterText_->setText(filter_.isEmpty() ? tr("All messages すべて")
                                         : tr("Only 絞込み: ") + parts.join(QLatin1String(", ")));
  showAll_->setEnabled(!filter_.isEmpty());
}

void HistoryWindow::showMenu(const QPoint& place) {
  const QModelIndex clicked = list_->indexAt(place);
  if (!clicked.isValid()) return;
  const int column = clicked.column();
  const QString text = clicked.data(Qt::EditRole).toString();
  const std::size_t message = model_->messageAt(clicked.row());
  QMenu menu(list_);
  menu.setObjectName(QStringLiteral("FoundMenu"));
  menu.addAction(tr("Open"), list_, [this] { openLine(list_->listIndex()); });
  menu.addSeparator();
  menu.addAction(tr("Copy cell"), list_, &FoundList::copyCell);
  menu.addAction(tr("Copy line\tCtrl+C"), list_, &FoundList::copyLines);
  if (saveList) menu.addAction(tr("Save list as...\tCtrl+S"), this, &HistoryWindow::saveFound);
  menu.addSeparator();
  QAction* only = menu.addAction(tr("Only \"%1\"").arg(menuText(text)));
  only->setObjectName(QStringLiteral("OnlyThis"));
  only->setToolTip(plainToolTip(text));
  connect(only, &QAction::triggered, this, [this, column, text] {
    FoundFilter filter = filter_;
    std::erase_if(filter.values, [column](const auto& value) { return value.column == column; });
    filter.values.push_back({column, text.toStdString()});
    order(std::move(filter), sort_);
  });
  menu.addAction(tr("Show all"), showAll_, &QPushButton::click)->setEnabled(!filter_.isEmpty());
  menu.addSeparator();
  const auto addSearch = [&](const QString& caption, int source, SearchMeaning meaning) {
    const std::string name(found_.text(message, source));
    menu.addAction(caption, this, [this, meaning, name] { openWith(meaning, name); })
        ->setEnabled(!name.empty());
  };
  addSearch(tr("All days of this aircraft"), kFoundRegistration, SearchMeaning::registration);
  addSearch(tr("All days of this flight"), kFoundFlight, SearchMeaning::flight);
  menu.exec(list_->viewport()->mapToGlobal(place));
}

void HistoryWindow::copyLines() {
  std::vector<std::size_t> messages;
  for (const int row : list_->selectedLines(LineCopy::kMostLines + 1)) {
    messages.push_back(model_->messageAt(row));
  }
  auto job = std::make_unique<LineCopy>(found_, std::move(messages));
  // The slot keeps the job for as long as it calls.
  const LineCopy* const copy = job.get();
  const auto taken = [this](const LineCopy& copied) {
    context_.desktop.setClipboardText(copied.text());
    if (!copied.isCut()) return;
    say(tr("Copied the first %1 lines. 先頭の%1行をコピーしました。").arg(LineCopy::kMostLines));
  };
  copying_.stop();
  // A few lines are there at once.
  const auto progress = job->step(Job::Clock::now() + kCopySlice);
  if (progress && *progress == JobProgress::done) {
    taken(*copy);
    return;
  }
  copying_.start(std::move(job), {.ended = [taken, copy](const Status&) { taken(*copy); }});
}

void HistoryWindow::openLine(int shownIndex) {
  if (shownIndex < 0 || shownIndex >= model_->rowCount() || !openMessage) return;
  const std::size_t message = model_->messageAt(shownIndex);
  const FoundMessages::Log log = found_.log(message);
  const auto& folder =
      log.source == HistorySource::raw ? context_.folders.eachLogs : context_.folders.logs;
  auto job = std::make_unique<LogPlace>(folder / toPath(log.name), log.source,
                                        found_.offset(message), context_.encoding);
  const LogPlace* const place = job.get();
  opening_.start(std::move(job), {.ended = [this, place, log](const Status& result) {
                   if (!result || !place->row()) {
                     say(tr("%1 no longer has this message. このメッセージはもうありません。")
                             .arg(shownText(log.name)));
                     return;
                   }
                   openMessage(log.source, log.name, *place->row());
                 }});
}

void HistoryWindow::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape) {
    if (search_.isRunning()) {
      cancel();
    } else {
      close();
    }
    return;
  }
  if (event->matches(QKeySequence::Save)) {
    saveFound();
    return;
  }
  QWidget::keyPressEvent(event);
}

void HistoryWindow::saveFound() {
  if (saveList) saveList(*list_, QStringLiteral("found_messages"));
}

void HistoryWindow::closeEvent(QCloseEvent* event) {
  cancel();
  ordering_.stop();
  opening_.stop();
  copying_.stop();
  QWidget::closeEvent(event);
}

}  // namespace vel
