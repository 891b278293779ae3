#include "tour/ui/window_tour_host.h"

#include <QHeaderView>
#include <QTableView>
#include <string_view>

#include "core/twips.h"

namespace vel {
namespace {

// The step that explains the rows stands over the list: only the columns left
// of it can be pointed at.
constexpr int kRowColumns = 3;

QRect onScreen(const QWidget* widget, const QRect& within) {
  return {widget->mapToGlobal(within.topLeft()), within.size()};
}

QRect columnTitle(const QTableView* list, int column) {
  const QHeaderView* header = list->horizontalHeader();
  const QRect title(header->sectionViewportPosition(column), 0, header->sectionSize(column),
                    header->height());
  return onScreen(header->viewport(), title);
}

QRect firstColumnsOfRow(const QTableView* list) {
  const int row = qMax(0, list->currentIndex().row());
  const QAbstractItemModel* model = list->model();
  QRect cells = list->visualRect(model->index(row, 0));
  if (row >= model->rowCount() || !list->viewport()->rect().contains(cells.center())) {
    // No line, or the selected one is out of sight: the place of the first one.
    cells = QRect(0, 0, list->columnWidth(0), list->verticalHeader()->defaultSectionSize());
  }
  for (int column = 1; column < kRowColumns; ++column) {
    cells.setRight(cells.right() + list->columnWidth(column));
  }
  return onScreen(list->viewport(), cells);
}

}  // namespace

QRect WindowTourHost::outerGeometry() const {
  return window_ == nullptr ? QRect() : window_->frameGeometry();
}

int WindowTourHost::panelTop() const {
  const auto* panel =
      window_ == nullptr ? nullptr : window_->findChild<QWidget*>(QStringLiteral("Frame4"));
  return panel == nullptr ? 0 : toTwips(panel->y());
}

QList<QRect> WindowTourHost::controlsOf(int step) const {
  const TourStep* shown = tourStep(step);
  QList<QRect> rectangles;
  if (shown == nullptr || window_ == nullptr) return rectangles;
  for (const TourTarget& target : shown->targets) {
    const QRect rectangle = rectangleOf(target);
    if (!rectangle.isEmpty()) rectangles.append(rectangle);
  }
  return rectangles;
}

QRect WindowTourHost::rectangleOf(const TourTarget& target) const {
  if (target.kind == TourTargetKind::window) return window_->frameGeometry();
  const QString name =
      QString::fromUtf8(target.name.data(), static_cast<qsizetype>(target.name.size()));
  if (target.kind == TourTargetKind::control) {
    const auto* control = window_->findChild<QWidget*>(name);
    if (control == nullptr || !control->isVisible()) return {};
    return onScreen(control, control->rect());
  }
  const auto* list = window_->findChild<QTableView*>(name);
  if (list == nullptr || !list->isVisible()) return {};
  return target.kind == TourTargetKind::columnTitle ? columnTitle(list, target.column)
                                                    : firstColumnsOfRow(list);
}

}  // namespace vel
