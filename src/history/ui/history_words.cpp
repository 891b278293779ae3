#include "history/ui/history_words.h"

#include <QHBoxLayout>
#include <QMenu>
#include <QVBoxLayout>

#include "core/ui/plain_text.h"
#include "core/ui/qt_desktop.h"
#include "core/ui/screen_room.h"

namespace vel {
namespace {

constexpr int kButtons = 6;
// On a screen that is narrower (pixels), fewer of them stand beside each other.
constexpr int kNarrowScreen = 900;
constexpr int kButtonsOnNarrow = 2;
constexpr std::size_t kInMenu = 100;
constexpr qsizetype kLongestName = 20;

QString shownName(const QString& name) { return withoutShortcut(shownText(name, kLongestName)); }

constexpr const char* kName = "name";

}  // namespace

HistoryWords::HistoryWords(QWidget* parent) : QWidget(parent) {
  auto* lines = new QVBoxLayout(this);
  lines->setContentsMargins(0, 0, 0, 0);
  lines->setSpacing(0);
  auto* top = new QHBoxLayout;
  const auto addDay = [&](const QString& caption, const QString& name) {
    auto* label = new QLabel(caption, this);
    label->setTextFormat(Qt::PlainText);
    top->addWidget(label);
    QToolButton* button = makeButton(name);
    top->addWidget(button);
    connect(button, &QToolButton::clicked, this,
            [this, button] { Q_EMIT dayAsked(button->property(kName).toString().left(10)); });
    return button;
  };
  first_ = addDay(tr("First heard 初受信"), QStringLiteral("FirstHeard"));
  last_ = addDay(tr("Last heard 最終受信"), QStringLiteral("LastHeard"));
  counts_ = new QLabel(this);
  counts_->setObjectName(QStringLiteral("FoundCounts"));
  counts_->setTextFormat(Qt::PlainText);
  const bool isNarrow = screenRoom(*this).width() < kNarrowScreen;
  if (!isNarrow) {
    top->addSpacing(12);
    top->addWidget(counts_);
  }
  top->addStretch();
  lines->addLayout(top);
  if (isNarrow) lines->addWidget(counts_);
  groups_.reserve(3);
  for (const Group& group :
       {makeGroup(QStringLiteral("Flight"), tr("Flights 便"), SearchMeaning::flight),
        makeGroup(QStringLiteral("Aircraft"), tr("Aircraft 機体"), SearchMeaning::registration),
        makeGroup(QStringLiteral("Route"), tr("Routes 路線"), SearchMeaning::anyText)}) {
    groups_.push_back(group);
  }
  for (const Group& group : groups_) {
    for (QToolButton* button : group.buttons) {
      connect(button, &QToolButton::clicked, this,
              [this, &group, button] { ask(group, button->property(kName).toString()); });
    }
  }
  show(HistoryTally());
}

QToolButton* HistoryWords::makeButton(const QString& name) {
  auto* button = new QToolButton(this);
  button->setObjectName(name);
  button->setAutoRaise(true);
  button->setFocusPolicy(Qt::TabFocus);
  return button;
}

HistoryWords::Group HistoryWords::makeGroup(const QString& name, const QString& caption,
                                            SearchMeaning meaning) {
  Group group{caption, meaning, new QLabel(this), {}, nullptr};
  group.label->setTextFormat(Qt::PlainText);
  group.label->setObjectName(name + QStringLiteral("Count"));
  auto* line = new QHBoxLayout;
  line->addWidget(group.label);
  const int buttons = screenRoom(*this).width() < kNarrowScreen ? kButtonsOnNarrow : kButtons;
  for (int i = 0; i < buttons; ++i) {
    group.buttons.push_back(makeButton(QStringLiteral("%1(%2)").arg(name).arg(i)));
    line->addWidget(group.buttons.back());
  }
  group.more = makeButton(name + QStringLiteral("More"));
  group.more->setText(tr("more..."));
  group.more->setToolTip(tr("More of them\n続き"));
  group.more->setPopupMode(QToolButton::InstantPopup);
  group.more->setMenu(new QMenu(group.more));
  line->addWidget(group.more);
  line->addStretch();
  static_cast<QVBoxLayout*>(layout())->addLayout(line);
  return group;
}

void HistoryWords::show(const HistoryTally& tally) {
  const auto setDay = [](QToolButton* button, const std::string& stamp) {
    // Its time is what a log has in that place.
    button->setText(stamp.empty() ? QStringLiteral("-") : shownName(toQString(stamp)));
    button->setProperty(kName, toQString(stamp));
    button->setEnabled(!stamp.empty());
    button->setToolTip(tr("Shows only this day\nこの日だけを表示"));
    button->setAccessibleName(shownText(stamp, kLongestEntry));
  };
  setDay(first_, tally.firstHeard());
  setDay(last_, tally.lastHeard());
  counts_->setText(
      tr("Messages 受信数 %1   Days 日数 %2").arg(tally.messages()).arg(tally.days().size()));
  showGroup(groups_.at(0), tally.flights());
  showGroup(groups_.at(1), tally.aircraft());
  showGroup(groups_.at(2), tally.routes());
}

void HistoryWords::showGroup(Group& group, const NameCounts& counts) {
  group.label->setText(QStringLiteral("%1 %2").arg(group.caption).arg(counts.size()));
  const auto names = counts.mostFirst(kInMenu);
  std::size_t next = 0;
  for (QToolButton* button : group.buttons) {
    button->setVisible(next < names.size());
    if (next == names.size()) continue;
    const auto& [name, count] = names[next++];
    button->setText(shownName(toQString(name)));
    button->setProperty(kName, toQString(name));
    button->setAccessibleName(shownText(name, kLongestEntry));
    button->setToolTip(plainToolTip(QStringLiteral("%1: %2").arg(toQString(name)).arg(count)));
  }
  group.more->setVisible(next < names.size());
  group.more->menu()->clear();
  for (; next < names.size(); ++next) {
    const QString name = toQString(names[next].first);
    const QString text = QStringLiteral("%1: %2").arg(shownName(name)).arg(names[next].second);
    group.more->menu()
        ->addAction(text, this, [this, &group, name] { ask(group, name); })
        ->setToolTip(plainToolTip(name));
  }
}

void HistoryWords::ask(const Group& group, const QString& text) {
  QString searched = text;
  // As both airports stand side by side in a line of a list log.
  if (group.meaning == SearchMeaning::anyText) searched.replace(QLatin1Char('-'), QLatin1Char(','));
  Q_EMIT searchAsked(group.meaning, searched);
}

}  // namespace vel
