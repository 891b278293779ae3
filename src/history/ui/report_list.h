#pragma once

#include <QComboBox>
#include <QWidget>
#include <string>
#include <vector>

#include "core/ui/line_list.h"
#include "core/ui/list_rows.h"

namespace vel {

/// Names with how often each was heard, as a list shows them.
class ReportListModel : public DraggedRowsModel {
  Q_OBJECT

 public:
  struct Line {
    std::string name;
    std::string heardAs;    ///< as it stands in the log
    std::size_t count = 0;  ///< 0 where it is not told
  };

  explicit ReportListModel(QObject* parent) : DraggedRowsModel(parent) {}

  void setLines(std::vector<Line> lines);
  [[nodiscard]] const Line& line(int row) const { return lines_[static_cast<std::size_t>(row)]; }

  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation,
                                    int role) const override;

 private:
  std::vector<Line> lines_;
};

/// Several lists of names, of which the chooser above shows one.
class ReportList : public QWidget {
  Q_OBJECT

 public:
  /// `captions` names the lists in their order; `names` begins the object names
  /// of chooser and list.
  ReportList(const QStringList& captions, const QString& names, QWidget* parent);

  using Lines = std::vector<ReportListModel::Line>;

  /// Empties all lists: what they will hold is not known yet.
  void clear();
  /// Puts lines in place of those of each list; what is selected stays selected
  /// where it still is there. After clear() a list that has lines is shown, if
  /// any has.
  void setLists(std::vector<Lines> lists);

  /// The list that is shown.
  [[nodiscard]] QTableView& shownList() const { return *view_; }

 Q_SIGNALS:
  /// A line of a list was double-clicked, or Enter was pressed at it.
  void lineOpened(int list, const QString& heardAs);
  /// Lines were asked for: name and count joined by a tab.
  void copied(const QString& text);

 private:
  void showCounts();
  void showList();
  [[nodiscard]] const Lines& shownLines() const;
  void open(int row);

  QStringList captions_;
  std::vector<Lines> lists_;
  bool isKnown_ = false;
  QComboBox* chooser_;
  ReportListModel* model_;
  LineList* view_;
};

}  // namespace vel
