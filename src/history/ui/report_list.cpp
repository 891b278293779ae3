#include "history/ui/report_list.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "core/ui/plain_text.h"
#include "core/ui/qt_desktop.h"

namespace vel {

void ReportListModel::setLines(std::vector<Line> lines) {
  beginResetModel();
  lines_ = std::move(lines);
  endResetModel();
}

int ReportListModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(lines_.size());
}

int ReportListModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : 2;
}

QVariant ReportListModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || role != Qt::DisplayRole) return {};
  const Line& shown = line(index.row());
  if (index.column() == 0) return shownText(shown.name);
  return shown.count > 0 ? QString::number(shown.count) : QString();
}

QVariant ReportListModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal) return {};
  if (role == Qt::DisplayRole) return section == 0 ? tr("Name 名称") : tr("Heard 受信数");
  if (role == Qt::TextAlignmentRole) return int{Qt::AlignLeft | Qt::AlignVCenter};
  return {};
}

ReportList::ReportList(const QStringList& captions, const QString& names, QWidget* parent)
    : QWidget(parent),
      captions_(captions),
      lists_(static_cast<std::size_t>(captions.size())),
      chooser_(new QComboBox(this)),
      model_(new ReportListModel(this)),
      view_(new QTableView(this)) {
  chooser_->setObjectName(names + QStringLiteral("Chooser"));
  chooser_->setAccessibleName(tr("Kind"));
  chooser_->setToolTip(tr("Which of the lists is shown\n表示する一覧"));
  chooser_->addItems(captions);
  view_->setObjectName(names + QStringLiteral("List"));
  view_->setAccessibleName(tr("Names"));
  view_->setToolTip(
      tr("Double-click or Enter selects a line of it in the browser\n"
         "ダブルクリックまたはEnterでブラウザの行を選択"));
  view_->setModel(model_);
  view_->setSelectionBehavior(QTableView::SelectRows);
  view_->setAlternatingRowColors(true);
  view_->setShowGrid(false);
  view_->setWordWrap(false);
  view_->setTabKeyNavigation(false);
  view_->verticalHeader()->hide();
  view_->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  view_->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 6);
  view_->horizontalHeader()->setStretchLastSection(true);
  view_->horizontalHeader()->setHighlightSections(false);
  constexpr int kNameWidth = 240;
  view_->setColumnWidth(0, kNameWidth);
  view_->installEventFilter(this);
  auto* rows = new QVBoxLayout(this);
  rows->addWidget(chooser_);
  rows->addWidget(view_, 1);
  connect(chooser_, &QComboBox::currentIndexChanged, this, &ReportList::showList);
  connect(view_, &QTableView::doubleClicked, this,
          [this](const QModelIndex& index) { open(index.row()); });
}

void ReportList::setLines(int list, std::vector<ReportListModel::Line> lines) {
  auto& kept = lists_[static_cast<std::size_t>(list)];
  kept = std::move(lines);
  chooser_->setItemText(list, QStringLiteral("%1 (%2)").arg(captions_[list]).arg(kept.size()));
  if (list == chooser_->currentIndex()) showList();
}

void ReportList::showList() {
  const QModelIndex current = view_->currentIndex();
  const std::string selected = current.isValid() ? model_->line(current.row()).name : "";
  model_->setLines(lists_[static_cast<std::size_t>(chooser_->currentIndex())]);
  for (int row = 0; !selected.empty() && row < model_->rowCount(); ++row) {
    if (model_->line(row).name != selected) continue;
    view_->setCurrentIndex(model_->index(row, 0));
    return;
  }
}

void ReportList::open(int row) {
  Q_EMIT lineOpened(chooser_->currentIndex(), toQString(model_->line(row).heardAs));
}

void ReportList::copy() {
  QModelIndexList selected = view_->selectionModel()->selectedRows();
  if (selected.isEmpty() && view_->currentIndex().isValid()) selected << view_->currentIndex();
  std::sort(selected.begin(), selected.end());
  QStringList lines;
  for (const QModelIndex& index : selected) {
    const ReportListModel::Line& line = model_->line(index.row());
    lines << toQString(line.name) + QLatin1Char('\t') + QString::number(line.count);
  }
  if (!lines.isEmpty()) Q_EMIT copied(lines.join(QLatin1Char('\n')));
}

bool ReportList::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::KeyPress) return QWidget::eventFilter(watched, event);
  const auto* key = static_cast<QKeyEvent*>(event);
  const bool isEnter = key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter;
  if (isEnter && view_->currentIndex().isValid()) {
    open(view_->currentIndex().row());
    return true;
  }
  if (key->matches(QKeySequence::Copy)) {
    copy();
    return true;
  }
  return QWidget::eventFilter(watched, event);
}

}  // namespace vel
