#include "history/ui/found_list.h"

#include <QHeaderView>
#include <algorithm>
#include <utility>

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

std::vector<int> FoundList::selectedLines(std::size_t most) const {
  // A million lines are a few ranges.
  std::vector<std::pair<int, int>> ranges;
  for (const QItemSelectionRange& range : selectionModel()->selection()) {
    ranges.emplace_back(range.top(), range.bottom());
  }
  std::sort(ranges.begin(), ranges.end());
  std::vector<int> lines;
  for (const auto& [top, bottom] : ranges) {
    const int from = lines.empty() ? top : std::max(top, lines.back() + 1);
    for (int row = from; row <= bottom && lines.size() < most; ++row) lines.push_back(row);
  }
  return lines;
}

void FoundList::copyLines() {
  if (listIndex() >= 0) Q_EMIT copyAsked();
}

}  // namespace vel
