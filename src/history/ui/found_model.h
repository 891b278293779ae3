#pragma once

#include <vector>

#include "core/ui/list_rows.h"
#include "history/found_messages.h"
#include "history/found_order.h"

namespace vel {

/// The found messages as a list shows them: those that pass the filter, in the
/// order of the sort. "Shown index" counts in that order.
class FoundModel : public DraggedRowsModel {
  Q_OBJECT

 public:
  /// The messages outlive the model.
  FoundModel(const FoundMessages& found, QObject* parent);

  /// The messages are about to be cleared.
  void beginClear();
  /// They have been; filter and sort stand.
  void endClear();

  /// Shows the messages that were found since the last call, at the places that
  /// the sort gives them.
  void publish();

  /// Takes another filter or sort over, with the order that a FoundOrdering made
  /// of the first `looked` messages.
  void setOrder(FoundFilter filter, FoundSort sort, std::vector<FoundPlace> order,
                std::size_t looked);

  [[nodiscard]] const FoundFilter& filter() const { return filter_; }
  [[nodiscard]] FoundSort sorting() const { return sort_; }

  /// The number of the message within the found ones.
  [[nodiscard]] std::size_t messageAt(int shownIndex) const;

  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation,
                                    int role) const override;

 private:
  const FoundMessages& found_;
  FoundFilter filter_;
  FoundSort sort_;
  std::vector<FoundPlace> order_;
  std::size_t looked_ = 0;
};

}  // namespace vel
