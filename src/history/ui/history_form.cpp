#include "history/ui/history_form.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

#include "core/ui/editor_box.h"

namespace vel {
namespace {

constexpr int kLongestTyped = 10'000;

void describe(QWidget* control, const char* name, const QString& accessibleName,
              const QString& toolTip) {
  control->setObjectName(QLatin1String(name));
  control->setAccessibleName(accessibleName);
  control->setToolTip(toolTip);
}

std::chrono::local_days dayOf(const QDate& date) {
  return std::chrono::local_days(std::chrono::year(date.year()) /
                                 std::chrono::month(static_cast<unsigned>(date.month())) /
                                 std::chrono::day(static_cast<unsigned>(date.day())));
}

}  // namespace

HistoryForm::HistoryForm(QWidget* parent)
    : QWidget(parent),
      meaning_(new QComboBox(this)),
      text_(new QLineEdit(this)),
      ignoreCase_(new QCheckBox(tr("I&gnore case"), this)),
      find_(new QPushButton(tr("&Find"), this)),
      cancel_(new QPushButton(tr("&Cancel"), this)),
      days_(new QComboBox(this)),
      from_(new QDateEdit(this)),
      to_(new QDateEdit(this)),
      lists_(new QCheckBox(tr("&ACARS lists"), this)),
      hfdl_(new QCheckBox(tr("&HFDL"), this)),
      rawLogs_(new QCheckBox(tr("Ra&w logs"), this)) {
  auto* rows = new QVBoxLayout(this);
  rows->setContentsMargins(0, 0, 0, 0);
  addSearchRow();
  addLogRow();
  setRunning(false);
  followDays();
}

void HistoryForm::addSearchRow() {
  meaning_->addItems({tr("Registration 機体番号"), tr("Flight 便名"), tr("Airport 空港"),
                      tr("ICAO24 address アドレス"), tr("Any text 任意の文字")});
  describe(meaning_, "Meaning", tr("Meaning of the text"),
           tr("What the text is taken for\n検索する項目"));
  text_->setMaxLength(kLongestTyped);
  refuseLongerTexts(*text_);
  describe(text_, "SearchText", tr("Text to search for"),
           tr("Text as it stands in the logs; the hyphen of a registration may be left out\n"
              "検索する文字（機体番号のハイフンは省略可）"));
  describe(ignoreCase_, "IgnoreCase", tr("Ignore case"),
           tr("Capital and small letters count as the same\n大文字と小文字を区別しない"));
  describe(find_, "Find", tr("Find"), tr("Searches all days (Enter)\n全日検索"));
  describe(cancel_, "Cancel", tr("Cancel"), tr("Stops the search (Esc)\n検索を中止"));
  auto* row = new QHBoxLayout;
  row->addWidget(meaning_);
  row->addWidget(text_, 1);
  row->addWidget(ignoreCase_);
  row->addWidget(find_);
  row->addWidget(cancel_);
  static_cast<QVBoxLayout*>(layout())->addLayout(row);
  connect(text_, &QLineEdit::returnPressed, this, &HistoryForm::findAsked);
  connect(find_, &QPushButton::clicked, this, &HistoryForm::findAsked);
  connect(cancel_, &QPushButton::clicked, this, &HistoryForm::cancelAsked);
}

void HistoryForm::addLogRow() {
  days_->addItems({tr("All days 全期間"), tr("7 days 7日間"), tr("30 days 30日間"),
                   tr("365 days 365日間"), tr("From - to 期間指定")});
  describe(days_, "Days", tr("Days"), tr("The days that are searched\n検索する期間"));
  for (QDateEdit* date : {from_, to_}) {
    date->setCalendarPopup(true);
    date->setDisplayFormat(QStringLiteral("yyyy/MM/dd"));
    date->setDate(QDate::currentDate());
  }
  describe(from_, "FromDay", tr("First day"), tr("First day\n開始日"));
  describe(to_, "ToDay", tr("Last day"), tr("Last day\n終了日"));
  describe(lists_, "Lists", tr("Search ACARS lists"),
           tr("Searches the ACARS list logs\nACARSのリストログを検索"));
  describe(hfdl_, "Hfdl", tr("Search HFDL logs"), tr("Searches the HFDL logs\nHFDLのログを検索"));
  describe(rawLogs_, "RawLogs", tr("Search raw logs"),
           tr("Searches the raw logs of each aircraft\n機体別の生ログを検索"));
  auto* row = new QHBoxLayout;
  row->addWidget(days_);
  row->addWidget(from_);
  row->addWidget(to_);
  row->addSpacing(12);
  for (QCheckBox* logs : {lists_, hfdl_, rawLogs_}) {
    logs->setChecked(true);
    row->addWidget(logs);
  }
  row->addStretch();
  static_cast<QVBoxLayout*>(layout())->addLayout(row);
  connect(days_, &QComboBox::currentIndexChanged, this, &HistoryForm::followDays);
}

void HistoryForm::followDays() {
  const bool fromTo = days_->currentIndex() == kFromTo;
  from_->setEnabled(fromTo);
  to_->setEnabled(fromTo);
}

HistoryQuery HistoryForm::query(std::chrono::local_days today) const {
  HistoryQuery query;
  query.text = text_->text().toStdString();
  query.meaning = static_cast<SearchMeaning>(meaning_->currentIndex());
  query.ignoreCase = ignoreCase_->isChecked();
  query.lists = lists_->isChecked();
  query.hfdl = hfdl_->isChecked();
  query.rawLogs = rawLogs_->isChecked();
  switch (days_->currentIndex()) {
    case kSevenDays:
      query.days = lastDays(today, 7);
      break;
    case kThirtyDays:
      query.days = lastDays(today, 30);
      break;
    case kYear:
      query.days = lastDays(today, 365);
      break;
    case kFromTo:
      query.days = {dayOf(from_->date()), dayOf(to_->date())};
      break;
    default:
      break;
  }
  return query;
}

void HistoryForm::setSearch(SearchMeaning meaning, const QString& text) {
  meaning_->setCurrentIndex(static_cast<int>(meaning));
  text_->setText(text);
}

void HistoryForm::setRunning(bool running) { cancel_->setEnabled(running); }

void HistoryForm::focusText() {
  text_->setFocus();
  text_->selectAll();
}

}  // namespace vel
