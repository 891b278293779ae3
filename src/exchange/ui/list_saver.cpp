#include "exchange/ui/list_saver.h"

#include <QFileDialog>
#include <QHeaderView>
#include <QPointer>
#include <QStandardPaths>
#include <algorithm>
#include <array>
#include <utility>

#include "core/ui/list_rows.h"
#include "core/ui/qt_desktop.h"

namespace vel {
namespace {

constexpr const char* kNotSaved = "The list could not be saved. 一覧を保存できませんでした。";
constexpr const char* kListChanged =
    "The list was filled anew while it was saved. 保存中に一覧が更新されました。";

struct Kind {
  ListFormat format;
  const char* filter;
  const char* suffix;
};

constexpr std::array<Kind, 3> kKinds = {
    {{ListFormat::spreadsheet, "CSV for spreadsheets (*.csv)", "csv"},
     {ListFormat::station, "CSV in the station's encoding (*.csv)", "csv"},
     {ListFormat::html, "HTML page (*.html)", "html"}}};

ListSaver::Choice askForFile(QWidget* window, const QString& suggested) {
  QStringList filters;
  for (const Kind& kind : kKinds) filters << QString::fromUtf8(kind.filter);
  QFileDialog dialog(window, QObject::tr("Save list as"),
                     QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation));
  dialog.setObjectName(QStringLiteral("SaveListDialog"));
  dialog.setAcceptMode(QFileDialog::AcceptSave);
  dialog.setNameFilters(filters);
  const auto chosen = [&]() -> const Kind& {
    const auto at = std::clamp<qsizetype>(filters.indexOf(dialog.selectedNameFilter()), 0,
                                          static_cast<qsizetype>(kKinds.size()) - 1);
    return kKinds[static_cast<std::size_t>(at)];
  };
  const auto follow = [&] { dialog.setDefaultSuffix(QString::fromUtf8(chosen().suffix)); };
  QObject::connect(&dialog, &QFileDialog::filterSelected, &dialog, follow);
  follow();
  dialog.selectFile(suggested);
  if (dialog.exec() != QDialog::Accepted) return {};
  return {dialog.selectedFiles().value(0), chosen().format};
}

std::vector<int> shownColumns(const QTableView& list) {
  std::vector<int> columns;
  for (int visual = 0; visual < list.model()->columnCount(); ++visual) {
    const int column = list.horizontalHeader()->logicalIndex(visual);
    if (!list.isColumnHidden(column)) columns.push_back(column);
  }
  return columns;
}

ShownList shownList(const QTableView& list, const QString& title) {
  const std::vector<int> columns = shownColumns(list);
  const QAbstractItemModel* const model = list.model();
  ShownList shown;
  shown.title = title.toStdString();
  for (const int column : columns) {
    shown.columns.push_back(
        model->headerData(column, Qt::Horizontal, Qt::DisplayRole).toString().toStdString());
  }
  shown.rows = static_cast<std::size_t>(model->rowCount());
  shown.cells = [model, columns](std::size_t row) {
    std::vector<std::string> cells;
    cells.reserve(columns.size());
    for (const int column : columns) {
      cells.push_back(wholeText(model->index(static_cast<int>(row), column)).toStdString());
    }
    return cells;
  };
  return shown;
}

}  // namespace

/// A list on its way to a file, for as long as its model stays as it is.
struct ListSaver::Saving {
  explicit Saving(JobRunner& jobs) : slot(jobs) {}

  QObject watch;  // ends with it the look at the model
  bool changed = false;
  JobSlot slot;
};

ListSaver::ListSaver(const Context& context) : chooseFile(askForFile), context_(context) {}

ListSaver::~ListSaver() = default;

void ListSaver::save(QTableView& list, const QString& title) {
  const QPointer<QTableView> shown = &list;
  const Choice choice = chooseFile(list.window(), title);
  // The dialog let events run.
  if (choice.file.isEmpty() || shown == nullptr) return;
  auto owned = std::make_unique<Saving>(context_.jobs);
  Saving& saving = *owned;
  const auto changed = [&saving] { saving.changed = true; };
  const QAbstractItemModel* const model = list.model();
  QObject::connect(model, &QAbstractItemModel::modelAboutToBeReset, &saving.watch, changed);
  QObject::connect(model, &QAbstractItemModel::layoutAboutToBeChanged, &saving.watch, changed);
  QObject::connect(model, &QAbstractItemModel::rowsAboutToBeRemoved, &saving.watch, changed);
  QObject::connect(model, &QObject::destroyed, &saving.watch, changed);
  savings_.push_back(std::move(owned));
  auto writing = std::make_shared<ListSaving>(toPath(choice.file.toStdString()), choice.format,
                                              context_.encoding, shownList(list, title));
  saving.slot.start(
      makeJob([&saving, writing](Job::Clock::time_point deadline) -> Result<JobProgress> {
        if (saving.changed) return Error{ErrorNumber::deviceIo, kListChanged};
        return writing->step(deadline);
      }),
      {.ended = [this, &saving](const Status& result) { end(saving, result); }});
}

void ListSaver::end(const Saving& saving, const Status& result) {
  const auto place = std::find_if(savings_.begin(), savings_.end(),
                                  [&](const auto& each) { return each.get() == &saving; });
  const std::unique_ptr<Saving> over = std::move(*place);
  savings_.erase(place);
  if (result) return;
  context_.desktop.showMessage(std::string(kNotSaved) + "\n\n" + reasonOf(result.error()));
}

}  // namespace vel
