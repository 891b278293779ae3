#pragma once

#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QTableView>
#include <functional>
#include <optional>

#include "core/context.h"
#include "core/job.h"
#include "core/ui/busy_labels.h"
#include "exchange/import_plan.h"
#include "exchange/ui/difference_model.h"
#include "tables/tables.h"
#include "tables/ui/table_editing.h"

namespace vel {

/// Fills the tables from a file: shows first what would become of them, with a
/// tick for each record that they have otherwise, and then writes it, one
/// rewrite for each table. Until then it can be left and nothing is touched.
class ImportDialog : public QDialog {
  Q_OBJECT

 public:
  /// The context outlives the dialog.
  ImportDialog(const Context& context, QWidget* parent);
  ~ImportDialog() override;

  /// Reads a file and shows what an import of it would do.
  void setFile(const QString& file);

  /// Asks for the file; set by tests.
  std::function<QString(QWidget* dialog)> chooseFile;

  void reject() override;

 Q_SIGNALS:
  /// A table was written.
  void tablesChanged();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QWidget* makeFileRow();
  QWidget* makeTickRow();
  QWidget* makeButtons();
  void readFile();
  void planned(const Status& result);
  void showPlan();
  void showCounts();
  void import();
  void writeNext();
  void written();

  const Context& context_;
  Tables tables_;
  BusyLabels* labels_;
  TableEditing editing_;
  QLineEdit* file_;
  QPushButton* choose_;
  QComboBox* table_;
  QCheckBox* all_;
  QLabel* summary_;
  QLabel* stage_;
  QProgressBar* progress_;
  QTableView* list_;
  DifferenceModel* differences_;
  QPushButton* tickAll_;
  QPushButton* tickNone_;
  QPushButton* import_;
  QPushButton* cancel_;
  JobSlot planning_;
  std::optional<ImportPlan> plan_;
  std::size_t next_ = 0;  // of the plan's tables, while they are written
  QString report_;        // what was written
  bool isWriting_ = false;
  bool isDone_ = false;
};

}  // namespace vel
