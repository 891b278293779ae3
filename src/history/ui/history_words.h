#pragma once

#include <QLabel>
#include <QStringList>
#include <QToolButton>
#include <QWidget>
#include <vector>

#include "history/history_tally.h"
#include "history/query.h"

namespace vel {

/// What was found, in words: when first and last, how many messages and days,
/// under which flights, with which aircraft, on which routes. Each value is a
/// button.
class HistoryWords : public QWidget {
  Q_OBJECT

 public:
  explicit HistoryWords(QWidget* parent);

  void show(const HistoryTally& tally);

 Q_SIGNALS:
  /// A flight, an aircraft or a route was clicked.
  void searchAsked(vel::SearchMeaning meaning, const QString& text);
  /// The first or the last message's day ("yyyy/mm/dd") was clicked.
  void dayAsked(const QString& day);

 private:
  // A line of values of one kind, the most frequent first.
  struct Group {
    QString caption;
    SearchMeaning meaning;
    QLabel* label;
    std::vector<QToolButton*> buttons;
    QToolButton* more;
  };

  Group makeGroup(const QString& name, const QString& caption, SearchMeaning meaning);
  QToolButton* makeButton(const QString& name);
  void showGroup(Group& group, const NameCounts& counts);
  void ask(const Group& group, const QString& text);

  QToolButton* first_;
  QToolButton* last_;
  QLabel* counts_;
  std::vector<Group> groups_;
};

}  // namespace vel
