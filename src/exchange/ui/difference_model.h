#pragma once

#include <vector>

#include "core/text.h"
#include "core/ui/list_rows.h"
#include "exchange/import_plan.h"

namespace vel {

/// The records that the tables have otherwise than a file, both side by side,
/// each with a tick that says whether the file's is taken.
class DifferenceModel : public DraggedRowsModel {
  Q_OBJECT

 public:
  enum Column : int { kTick, kTable, kBefore, kAfter, kColumns };

  /// The encoding is that of the tables.
  DifferenceModel(const Encoding& encoding, QObject* parent);

  /// Shows the differences of a plan, which outlives it or is taken back by null.
  /// Ticks change the plan.
  void setPlan(ImportPlan* plan);

  /// Ticks all, or none.
  void tickAll(bool ticked);
  void toggle(const QModelIndexList& rows);
  [[nodiscard]] int ticked() const;

  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  bool setData(const QModelIndex& index, const QVariant& value, int role) override;
  [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation,
                                    int role) const override;
  [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& index) const override;

 Q_SIGNALS:
  void ticksChanged();

 private:
  struct Place {
    TablePlan* table;
    const ImportDifference* difference;
  };
  [[nodiscard]] Place placeOf(int row) const;
  [[nodiscard]] QString lineText(Table table, std::string_view line) const;

  Encoding encoding_;
  ImportPlan* plan_ = nullptr;
};

}  // namespace vel
