#include "history/ui/found_list.h"

#include <QHeaderView>

namespace vel {

FoundList::FoundList(FoundModel* model, QWidget* parent) : LineList(model, parent) {
  setObjectName(QStringLiteral("FoundList"));
  setAccessibleName(tr("Found messages"));
  setToolTip(tr("Double-click or Enter opens the day\nダブルクリックまたはEnterでその日を開く"));
  setContextMenuPolicy(Qt::CustomContextMenu);
  QHeaderView* header = horizontalHeader();
  header->setSectionsClickable(true);
  header->setSortIndicatorShown(false);
  constexpr int kCharacters[kFoundColumns] = {11, 9, 8, 9, 10, 7, 7, 10, 20};
  const int character = fontMetrics().horizontalAdvance(QLatin1Char('0'));
  for (int column = 0; column < kFoundColumns; ++column) {
    setColumnWidth(column, kCharacters[column] * character + 12);
  }
  connect(header, &QHeaderView::sectionClicked, this, &FoundList::sortAsked);
}

}  // namespace vel
