#pragma once

#include <QString>
#include <QTableView>
#include <functional>
#include <memory>
#include <vector>

#include "core/context.h"
#include "core/job.h"
#include "exchange/list_saving.h"

namespace vel {

/// Saves what a list shows: its rows in their order, its columns in theirs. Both
/// browsers and the other windows share one.
class ListSaver {
 public:
  /// Where the user wants a list, and as what; an empty path for nowhere.
  struct Choice {
    QString file;
    ListFormat format = ListFormat::spreadsheet;
  };

  /// The context outlives the saver.
  explicit ListSaver(const Context& context);
  ListSaver(const ListSaver&) = delete;
  ListSaver& operator=(const ListSaver&) = delete;
  ~ListSaver();

  /// Asks where to save the list and begins. While one is saved another can be;
  /// a list that is filled anew meanwhile is refused. `title` is the page's
  /// title and the suggested name.
  void save(QTableView& list, const QString& title);

  /// True while a list is being saved.
  [[nodiscard]] bool isSaving() const { return !savings_.empty(); }

  /// Asks for the file; set by tests.
  std::function<Choice(QWidget* window, const QString& suggested)> chooseFile;

 private:
  struct Saving;
  void end(const Saving& saving, const Status& result);

  const Context& context_;
  std::vector<std::unique_ptr<Saving>> savings_;
};

}  // namespace vel
