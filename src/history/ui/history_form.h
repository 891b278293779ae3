#pragma once

#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QLineEdit>
#include <QPushButton>
#include <QWidget>
#include <chrono>

#include "history/query.h"

namespace vel {

/// What is asked for: one text and what it means, the days, the logs.
class HistoryForm : public QWidget {
  Q_OBJECT

 public:
  /// The choices of days, in their order.
  enum Days : int { kAllDays, kSevenDays, kThirtyDays, kYear, kFromTo };

  explicit HistoryForm(QWidget* parent);

  /// The query as it stands; `today` ends the last days.
  [[nodiscard]] HistoryQuery query(std::chrono::local_days today) const;

  /// Puts a search in place of the present one; days and logs stay.
  void setSearch(SearchMeaning meaning, const QString& text);

  void setRunning(bool running);
  void focusText();

 Q_SIGNALS:
  void findAsked();
  void cancelAsked();

 private:
  void addSearchRow();
  void addLogRow();
  void followDays();

  QComboBox* meaning_;
  QLineEdit* text_;
  QCheckBox* ignoreCase_;
  QPushButton* find_;
  QPushButton* cancel_;
  QComboBox* days_;
  QDateEdit* from_;
  QDateEdit* to_;
  QCheckBox* lists_;
  QCheckBox* hfdl_;
  QCheckBox* rawLogs_;
};

}  // namespace vel
