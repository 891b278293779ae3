#include "exchange/ui/import_dialog.h"

#include <QDir>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QVBoxLayout>
#include <algorithm>
#include <memory>
#include <utility>

#include "core/ui/plain_text.h"
#include "core/ui/qt_desktop.h"
#include "core/ui/screen_room.h"
#include "exchange/import_command.h"
#include "exchange/list_saving.h"

namespace vel {
namespace {

constexpr QSize kFirstSize{860, 560};
constexpr int kWholeProgress = 1000;

void describe(QWidget& control, const char* name, const QString& toolTip) {
  control.setObjectName(QLatin1String(name));
  control.setAccessibleName(toolTip.section(QLatin1Char('\n'), 0, 0));
  control.setToolTip(toolTip);
}

// File managers copy a path with quotes around it.
QString pathOf(const QString& text) {
  QString path = text.trimmed();
  constexpr QLatin1Char kQuote('"');
  if (path.size() > 1 && path.startsWith(kQuote) && path.endsWith(kQuote)) {
    path = path.mid(1, path.size() - 2);
  }
  return path;
}

}  // namespace

ImportDialog::ImportDialog(const Context& context, QWidget* parent)
    : QDialog(parent),
      context_(context),
      tables_(context.folders, context.encoding),
      labels_(new BusyLabels(QStringLiteral("Processing"), this)),
      editing_(context, tables_, *labels_),
      file_(new QLineEdit(this)),
      choose_(new QPushButton(tr("C&hoose..."), this)),
      table_(new QComboBox(this)),
      all_(new QCheckBox(tr("&Everything, not only what the logs name ログにないものも"), this)),
      summary_(new QLabel(this)),
      stage_(new QLabel(this)),
      progress_(new QProgressBar(this)),
      list_(new QTableView(this)),
      differences_(new DifferenceModel(context.encoding, this)),
      tickAll_(new QPushButton(tr("Tick &all"), this)),
      tickNone_(new QPushButton(tr("Tick &none"), this)),
      import_(new QPushButton(tr("&Import"), this)),
      cancel_(new QPushButton(tr("Cancel"), this)),
      planning_(context.jobs) {
  setObjectName(QStringLiteral("ImportDialog"));
  setWindowTitle(tr("Import データ取込み"));
  describe(*summary_, "ImportSummary", tr("What an import would do\n取込み内容"));
  summary_->setTextFormat(Qt::PlainText);
  summary_->setWordWrap(true);
  summary_->setTextInteractionFlags(Qt::TextSelectableByMouse);
  summary_->setAlignment(Qt::AlignLeft | Qt::AlignTop);
  stage_->setObjectName(QStringLiteral("ImportStage"));
  stage_->setTextFormat(Qt::PlainText);
  describe(*progress_, "ImportProgress", tr("How far the file has been read\n進捗"));
  progress_->setRange(0, kWholeProgress);
  progress_->setTextVisible(false);
  describe(*list_, "ImportDifferences",
           tr("Records that the tables have otherwise; Space ticks\n"
              "内容が異なるデータ。スペースキーで選択"));
  list_->setModel(differences_);
  list_->setSelectionBehavior(QTableView::SelectRows);
  list_->setAlternatingRowColors(true);
  list_->setShowGrid(false);
  list_->setWordWrap(false);
  list_->setTabKeyNavigation(false);
  list_->verticalHeader()->hide();
  list_->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  list_->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 6);
  list_->horizontalHeader()->setStretchLastSection(true);
  list_->horizontalHeader()->setHighlightSections(false);
  const int character = fontMetrics().averageCharWidth();
  list_->setColumnWidth(DifferenceModel::kTick, 7 * character);
  list_->setColumnWidth(DifferenceModel::kTable, 10 * character);
  list_->setColumnWidth(DifferenceModel::kBefore, 48 * character);
  list_->installEventFilter(this);
  offerDragging(*list_);

  auto* rows = new QVBoxLayout(this);
  rows->addWidget(makeFileRow());
  rows->addWidget(summary_);
  rows->addWidget(list_, 1);
  rows->addWidget(makeTickRow());
  auto* progressRow = new QHBoxLayout;
  progressRow->addWidget(stage_);
  progressRow->addWidget(progress_, 1);
  progressRow->addWidget(labels_);
  rows->addLayout(progressRow);
  rows->addWidget(makeButtons());
  connect(differences_, &DifferenceModel::ticksChanged, this, &ImportDialog::showCounts);
  chooseFile = [](QWidget* dialog) {
    return QFileDialog::getOpenFileName(dialog, tr("Import a file"));
  };
  resize(kFirstSize);
  fitToScreen(*this);
  file_->setFocus();
  showPlan();
}

// Where the program ends it is still shown: the list asks for the plan while it
// is hidden.
ImportDialog::~ImportDialog() { hide(); }

QWidget* ImportDialog::makeFileRow() {
  auto* row = new QWidget(this);
  auto* lines = new QVBoxLayout(row);
  lines->setContentsMargins(0, 0, 0, 0);
  auto* first = new QHBoxLayout;
  auto* caption = new QLabel(tr("&File ファイル"), row);
  caption->setBuddy(file_);
  describe(*file_, "ImportFile", tr("The file to import\n取り込むファイル"));
  describe(*choose_, "ImportChoose",
           tr("Chooses the file; it can also be dropped on a browser\n"
              "ファイルを選択。ブラウザへのドロップも可能"));
  choose_->setAutoDefault(false);
  first->addWidget(caption);
  first->addWidget(file_, 1);
  first->addWidget(choose_);
  auto* second = new QHBoxLayout;
  auto* tableCaption = new QLabel(tr("&Table 表"), row);
  tableCaption->setBuddy(table_);
  describe(*table_, "ImportTable", tr("Which table is filled\n取込み先"));
  table_->addItem(tr("All that the file fills すべて"));
  for (const Table table : kTables) {
    table_->addItem(toQString(tableName(table) + std::string(kTableExtension)));
  }
  describe(*all_, "ImportAll",
           tr("Imports also what no log of this station names\nログにないデータも取り込む"));
  second->addWidget(tableCaption);
  second->addWidget(table_);
  second->addWidget(all_);
  second->addStretch();
  lines->addLayout(first);
  lines->addLayout(second);
  connect(file_, &QLineEdit::editingFinished, this, [this] {
    if (file_->isModified()) setFile(pathOf(file_->text()));
  });
  connect(choose_, &QPushButton::clicked, this, [this] {
    const QString file = chooseFile(this);
    if (!file.isEmpty()) setFile(file);
  });
  connect(table_, &QComboBox::currentIndexChanged, this, &ImportDialog::readFile);
  connect(all_, &QCheckBox::toggled, this, &ImportDialog::readFile);
  return row;
}

QWidget* ImportDialog::makeTickRow() {
  auto* row = new QWidget(this);
  auto* line = new QHBoxLayout(row);
  line->setContentsMargins(0, 0, 0, 0);
  describe(*tickAll_, "TickAll", tr("Takes every record from the file\nすべて選択"));
  describe(*tickNone_, "TickNone", tr("Keeps every record of the tables\nすべて解除"));
  for (QPushButton* button : {tickAll_, tickNone_}) {
    button->setAutoDefault(false);
    line->addWidget(button);
  }
  line->addStretch();
  connect(tickAll_, &QPushButton::clicked, this, [this] { differences_->tickAll(true); });
  connect(tickNone_, &QPushButton::clicked, this, [this] { differences_->tickAll(false); });
  return row;
}

QWidget* ImportDialog::makeButtons() {
  auto* row = new QWidget(this);
  auto* line = new QHBoxLayout(row);
  line->setContentsMargins(0, 0, 0, 0);
  describe(*import_, "ImportButton", tr("Writes the records to the tables\n表に書き込む"));
  describe(*cancel_, "CancelButton", tr("Closes; nothing more is written (Esc)\n閉じる"));
  import_->setDefault(true);
  cancel_->setAutoDefault(false);
  line->addStretch();
  line->addWidget(import_);
  line->addWidget(cancel_);
  connect(import_, &QPushButton::clicked, this, &ImportDialog::import);
  connect(cancel_, &QPushButton::clicked, this, &ImportDialog::reject);
  return row;
}

void ImportDialog::setFile(const QString& file) {
  const QString native = QDir::toNativeSeparators(file);
  file_->setText(native);
  file_->setToolTip(plainToolTip(native));
  readFile();
}

void ImportDialog::readFile() {
  if (isWriting_) return;
  isDone_ = false;
  planning_.stop();
  differences_->setPlan(nullptr);
  plan_.reset();
  if (file_->text().isEmpty()) {
    showPlan();
    return;
  }
  ImportWish wish;
  wish.all = all_->isChecked();
  if (table_->currentIndex() > 0) {
    wish.table = kTables[static_cast<std::size_t>(table_->currentIndex()) - 1];
  }
  auto job = std::make_unique<ImportPlanning>(context_.folders, context_.encoding,
                                              toPath(pathOf(file_->text()).toStdString()), wish);
  ImportPlanning* const planning = job.get();
  planning_.start(std::move(job), {.stepped =
                                       [this, planning] {
                                         stage_->setText(toQString(planning->stageText()));
                                         progress_->setValue(static_cast<int>(planning->progress() *
                                                                              kWholeProgress));
                                       },
                                   .ended =
                                       [this, planning](const Status& result) {
                                         if (result) plan_ = std::move(planning->plan());
                                         planned(result);
                                       }});
  showPlan();
}

void ImportDialog::planned(const Status& result) {
  showPlan();
  if (!result) summary_->setText(toQString(reasonOf(result.error())));
}

void ImportDialog::showPlan() {
  const bool isReading = planning_.isRunning();
  for (QWidget* control : std::initializer_list<QWidget*>{file_, choose_, table_, all_}) {
    control->setEnabled(!isWriting_);
  }
  differences_->setPlan(plan_ ? &*plan_ : nullptr);
  stage_->setVisible(isReading);
  progress_->setVisible(isReading);
  const bool hasDifferences = differences_->rowCount() > 0 && !isWriting_ && !isDone_;
  for (QPushButton* button : {tickAll_, tickNone_}) button->setEnabled(hasDifferences);
  list_->setEnabled(!isWriting_ && !isDone_);
  cancel_->setText(isDone_ ? tr("Close") : tr("Cancel"));
  cancel_->setEnabled(!isWriting_);
  showCounts();
}

void ImportDialog::showCounts() {
  std::size_t records = 0;
  if (plan_ && !isDone_) {
    for (const TablePlan& table : plan_->tables) records += table.written();
  }
  if (!isWriting_) import_->setEnabled(records > 0);
  QString text;
  if (isDone_ || isWriting_) {
    text = report_;
  } else if (plan_) {
    text = toQString(planText(*plan_)) + QLatin1Char('\n') +
           tr("Import writes %1 records (%2 ticked). %1件を書き込みます。")
               .arg(records)
               .arg(differences_->ticked());
  } else if (!planning_.isRunning()) {
    text =
        tr("Choose a file of airports, airlines, aircraft or routes.\n"
           "空港・航空会社・機体・路線のファイルを選択してください。");
  }
  summary_->setText(text);
}

void ImportDialog::import() {
  if (!plan_ || isWriting_ || isDone_) return;
  // Its key may be pressed while another path stands in the box.
  if (file_->isModified()) {
    setFile(pathOf(file_->text()));
    return;
  }
  isWriting_ = true;
  next_ = 0;
  report_.clear();
  showPlan();
  writeNext();
}

void ImportDialog::writeNext() {
  while (next_ < plan_->tables.size() && plan_->tables[next_].written() == 0) ++next_;
  if (next_ == plan_->tables.size()) {
    written();
    return;
  }
  const TablePlan& table = plan_->tables[next_];
  if (const Status made = makeMissingTable(context_.folders, table.table()); !made) {
    context_.desktop.showMessage(tableName(table.table()) + ".csv: " + reasonOf(made.error()));
    written();
    return;
  }
  editing_.rewrite(
      *import_, ReferenceTableRewrite(context_.folders, context_.encoding, table.records),
      [this] {
        const TablePlan& done = plan_->tables[next_];
        report_ += tr("%1.csv: %2 records written. %2件を書き込みました。\n")
                       .arg(toQString(tableName(done.table())))
                       .arg(done.written());
        ++next_;
        // The rewrite has to be over before the next one begins.
        QMetaObject::invokeMethod(this, &ImportDialog::writeNext, Qt::QueuedConnection);
      },
      [this] { written(); });
}

void ImportDialog::written() {
  isWriting_ = false;
  isDone_ = true;
  showPlan();
  import_->setEnabled(false);
  cancel_->setFocus();
  if (!report_.isEmpty() && !context_.desktop.isEnding()) Q_EMIT tablesChanged();
}

void ImportDialog::reject() {
  // What has begun is finished.
  if (isWriting_) return;
  planning_.stop();
  QDialog::reject();
}

bool ImportDialog::eventFilter(QObject* watched, QEvent* event) {
  if (watched == list_ && event->type() == QEvent::KeyPress &&
      static_cast<QKeyEvent*>(event)->key() == Qt::Key_Space) {
    // The keys may stand on a line that is not selected.
    QModelIndexList rows = list_->selectionModel()->selectedRows();
    if (rows.isEmpty() && list_->currentIndex().isValid()) rows << list_->currentIndex();
    differences_->toggle(rows);
    return true;
  }
  return QDialog::eventFilter(watched, event);
}

}  // namespace vel
