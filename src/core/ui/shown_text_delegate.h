#pragma once

#include <QStyledItemDelegate>

namespace vel {

/// Paints the cells of a list or table: lays no more of a text out than its
/// cell can show, and lets only what is selected look so.
class ShownTextDelegate : public QStyledItemDelegate {
  Q_OBJECT

 public:
  using QStyledItemDelegate::QStyledItemDelegate;

 protected:
  void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;
};

}  // namespace vel
