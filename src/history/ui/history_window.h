#pragma once

#include <QElapsedTimer>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QWidget>
#include <cstddef>
#include <functional>
#include <optional>
#include <string>

#include "core/context.h"
#include "history/found_messages.h"
#include "history/history_search.h"
#include "history/history_tally.h"
#include "history/ui/found_list.h"
#include "history/ui/found_model.h"
#include "history/ui/history_form.h"
#include "history/ui/history_words.h"
#include "history/ui/strip_picture.h"

namespace vel {

/// The window that finds messages in the logs of all days: the search, when and
/// how often something was heard, and the list of the messages.
class HistoryWindow : public QWidget {
  Q_OBJECT

 public:
  /// The context outlives the window.
  explicit HistoryWindow(const Context& context);
  ~HistoryWindow() override;

  /// Shows the window in front, ready for typing.
  void open();
  /// The same, and searches at once.
  void openWith(SearchMeaning meaning, const std::string& text);

  /// Opens a message where it stands: the row of its log's unfiltered list, or
  /// of the messages that the raw viewer shows.
  std::function<void(HistorySource source, const std::string& log, std::size_t row)> openMessage;

  /// Saves a list (Ctrl+S); without it the window does not offer that. `title`
  /// is also the suggested name.
  std::function<void(QTableView& list, const QString& title)> saveList;

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void closeEvent(QCloseEvent* event) override;

 private:
  QWidget* makeStrips();
  QWidget* makeFilterRow();
  void find();
  void saveFound();
  void cancel();
  void searchStepped(const HistorySearch& search);
  void searchEnded(const HistorySearch& search, const Status& result);
  void showFound();
  void showStrips();
  void order(FoundFilter filter, FoundSort sort);
  void sortBy(int column);
  void restrictToDays(const StripBar& bar);
  void restrictToDay(const QString& day);
  void restrictToHour(const StripBar& bar);
  void showFilter();
  void showMenu(const QPoint& place);
  void copyLines();
  void openLine(int shownIndex);
  void say(const QString& text);

  const Context& context_;
  FoundMessages found_;
  HistoryTally tally_;
  HistoryForm* form_;
  QProgressBar* progress_;
  QLabel* state_;
  HistoryWords* words_;
  StripPicture* days_;
  StripPicture* hours_;
  QLabel* filterText_;
  QPushButton* showAll_;
  FoundModel* model_;
  FoundList* list_;
  QLabel* problems_;
  QElapsedTimer sinceShown_;
  QElapsedTimer sinceWords_;
  // What the list is to show; the model follows once it has been ordered.
  FoundFilter filter_;
  FoundSort sort_;
  JobSlot search_;
  JobSlot ordering_;
  JobSlot opening_;
  JobSlot copying_;
};

}  // namespace vel
