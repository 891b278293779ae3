#include "history/ui/report_list.h"

#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "core/ui/plain_text.h"
#include "core/ui/qt_desktop.h"

namespace vel {
namespace {

class NameList : public LineList {
 public:
  using LineList::LineList;

  // The keys may stand on a line that is not selected yet.
  void copyLines() override {
    if (listIndex() < 0 && currentIndex().isValid()) selectRow(currentIndex().row());
    LineList::copyLines();
  }
};

}  // namespace

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
  if (!index.isValid() || (role != Qt::DisplayRole && role != Qt::EditRole)) return {};
  const Line& shown = line(index.row());
  if (role == Qt::EditRole) {
    return index.column() == 0 ? toQString(shown.name) : QString::number(shown.count);
  }
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
      view_(new NameList(model_, this)) {
  chooser_->setObjectName(names + QStringLiteral("Chooser"));
  chooser_->setAccessibleName(tr("Kind"));
  chooser_->setToolTip(tr("Which of the lists is shown\n表示する一覧"));
  chooser_->addItems(captions);
  view_->setObjectName(names + QStringLiteral("List"));
  view_->setAccessibleName(tr("Names"));
  view_->setToolTip(
      tr("Double-click or Enter selects a line of it in the browser\n"
         "ダブルクリックまたはEnterでブラウザの行を選択"));
  constexpr int kNameWidth = 240;
  view_->setColumnWidth(0, kNameWidth);
  auto* rows = new QVBoxLayout(this);
  rows->addWidget(chooser_);
  rows->addWidget(view_, 1);
  connect(chooser_, &QComboBox::currentIndexChanged, this, &ReportList::showList);
  connect(view_, &LineList::lineOpened, this, &ReportList::open);
  connect(view_, &LineList::copied, this, &ReportList::copied);
}

void ReportList::clear() {
  isKnown_ = false;
  for (Lines& lines : lists_) lines.clear();
  view_->setEmptyHint({});
  showCounts();
  showList();
}

void ReportList::setLists(std::vector<Lines> lists) {
  lists_ = std::move(lists);
  view_->setEmptyHint(tr("None. ありません。"));
  showCounts();
  if (!std::exchange(isKnown_, true) && shownLines().empty()) {
    const auto filled = std::find_if(lists_.begin(), lists_.end(),
                                     [](const Lines& lines) { return !lines.empty(); });
    if (filled != lists_.end()) {
      chooser_->setCurrentIndex(static_cast<int>(filled - lists_.begin()));
    }
  }
  showList();
}

void ReportList::showCounts() {
  for (int list = 0; list < chooser_->count(); ++list) {
    const std::size_t count = lists_[static_cast<std::size_t>(list)].size();
    chooser_->setItemText(list, QStringLiteral("%1 (%2)").arg(captions_[list]).arg(count));
  }
}

const ReportList::Lines& ReportList::shownLines() const {
  return lists_[static_cast<std::size_t>(chooser_->currentIndex())];
}

void ReportList::showList() {
  const QModelIndex current = view_->currentIndex();
  const std::string selected = current.isValid() ? model_->line(current.row()).name : "";
  model_->setLines(shownLines());
  for (int row = 0; !selected.empty() && row < model_->rowCount(); ++row) {
    if (model_->line(row).name != selected) continue;
    view_->setCurrentIndex(model_->index(row, 0));
    return;
  }
}

void ReportList::open(int row) {
  Q_EMIT lineOpened(chooser_->currentIndex(), toQString(model_->line(row).heardAs));
}

}  // namespace vel
