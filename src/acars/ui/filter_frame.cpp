#include "acars/ui/filter_frame.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

#include "core/ui/capitals.h"
#include "core/ui/narrow_letters.h"

namespace vel {
namespace {

// The guided tour stands right of the flight box: it ends left of 116 pixels.
constexpr int kFlightBoxWidth = 60;
constexpr int kTitleWidth = 39;
// Beside a box's text.
constexpr int kBoxFrame = 12;

// The photo filter that shows lines with this mark; all where it is none.
PhotoFilter photoFilterOf(const QString& mark) {
  if (mark == QLatin1String("O") || mark == QString::fromUtf8("○")) return PhotoFilter::available;
  if (mark == QLatin1String("X") || mark == QString::fromUtf8("×")) return PhotoFilter::unavailable;
  return PhotoFilter::all;
}

// As much as a filter box has to show at once.
QString longestText(FilterFrame::Box index) {
  switch (index) {
    case FilterFrame::kFlight:
      return QStringLiteral("XX0000");
    case FilterFrame::kAirport:
      return QStringLiteral("XXXX");
    case FilterFrame::kEquipment:
      return QStringLiteral("X000");
    case FilterFrame::kTime:
      return QStringLiteral("00:00:00");
    default:
      return QStringLiteral("X000000");
  }
}

// A column of the frame: the caption above its controls.
void addColumn(QHBoxLayout* row, const QString& caption, const QList<QWidget*>& controls,
               int stretch = 0) {
  auto* column = new QVBoxLayout;
  column->setSpacing(0);
  auto* label = new QLabel(caption);
  QFont font = label->font();
  font.setPointSizeF(font.pointSizeF() * 0.85);
  label->setFont(font);
  label->setBuddy(controls.first());
  column->addWidget(label);
  auto* line = new QHBoxLayout;
  line->setSpacing(3);
  for (QWidget* control : controls) line->addWidget(control);
  column->addLayout(line);
  row->addLayout(column, stretch);
}

}  // namespace

FilterFrame::FilterFrame(QWidget* parent) : QFrame(parent) {
  setObjectName(QStringLiteral("Frame7"));
  setAccessibleName(tr("Filter"));
  setFrameShape(StyledPanel);

  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(3, 0, 5, 2);
  row->setSpacing(3);
  auto* title = new QLabel(tr("Filter"), this);
  QFont bold = title->font();
  bold.setBold(true);
  title->setFont(bold);
  narrowLetters(*title, title->sizeHint().width(), kTitleWidth);
  row->addWidget(title);

  addColumn(row, tr("Flight"),
            {makeBox(kFlight, tr("Flight filter"),
                     tr("Shows only flights that contain this text\n便名に含まれる文字"),
                     kFlightBoxWidth)});
  addColumn(
      row, tr("Regist."),
      {makeBox(kRegistration, tr("Registration filter"),
               tr("Shows only registrations that contain this text\n機体番号に含まれる文字"), 80)});
  addColumn(row, tr("DEPT/DEST"),
            {makeBox(kAirport, tr("Departure or destination filter"),
                     tr("Shows only lines whose departure or destination contains this text\n"
                        "出発または到着空港に含まれる文字"),
                     72)});
  addColumn(row, tr("Equipment"),
            {makeBox(kEquipment, tr("Equipment filter"),
                     tr("Shows only equipment that contains this text, as it is written\n"
                        "機種に含まれる文字（大文字・小文字を区別）"),
                     72)});
  addColumn(row, tr("Remarks"),
            {makeBox(kRemarks, tr("Remarks filter"),
                     tr("Shows only remarks that contain this text, as it is written\n"
                        "備考に含まれる文字（大文字・小文字を区別）"),
                     0)},
            1);

  photo_ = new QComboBox(this);
  photo_->setObjectName(QStringLiteral("Combo4"));
  photo_->setAccessibleName(tr("Photo filter"));
  photo_->setToolTip(tr("Shows lines by their photo mark\n写真の有無"));
  photo_->addItems({tr("All"), tr("Available"), tr("Unavailable")});
  addColumn(row, tr("Pict"), {photo_});

  timeComparison_ = new QComboBox(this);
  timeComparison_->setObjectName(QStringLiteral("Combo5"));
  timeComparison_->setAccessibleName(tr("Time comparison"));
  timeComparison_->setToolTip(tr("How the time is compared\n時刻の比較方法"));
  timeComparison_->addItems({tr("Earlier than"), tr("Prefix"), tr("Later than")});
  QLineEdit* time = makeBox(kTime, tr("Time filter"),
                            tr("hh:mm:ss or its beginning: 09 shows every line of the hour 09\n"
                               "時刻またはその先頭。09 で9時台のすべてを表示"),
                            72);
  addColumn(row, tr("Time"), {timeComparison_, time});

  letter_ = new QCheckBox(tr("Letter"), this);
  letter_->setObjectName(QStringLiteral("Check1"));
  letter_->setAccessibleName(tr("Letter"));
  letter_->setToolTip(
      tr("Shows only flights whose airline letters are missing from letter.csv\n"
         "letter.csvに登録されていない航空会社の便のみを表示"));
  clear_ = new QPushButton(tr("C&lear"), this);
  clear_->setObjectName(QStringLiteral("Command9"));
  clear_->setAccessibleName(tr("Clear every filter"));
  clear_->setToolTip(tr("Clears every filter (Ctrl+L)\nすべての条件を消去"));
  addColumn(row, QString(), {letter_, clear_});

  count_ = new QLabel(this);
  count_->setObjectName(QStringLiteral("Label3"));
  count_->setAccessibleName(tr("Number of shown lines"));
  count_->setToolTip(tr("Number of shown lines\n表示件数"));
  count_->setFrameShape(StyledPanel);
  count_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  count_->setMinimumWidth(64);
  count_->setContentsMargins(2, 0, 4, 0);
  addColumn(row, tr("Lines"), {count_});

  connect(photo_, &QComboBox::currentIndexChanged, this, &FilterFrame::changed);
  connect(timeComparison_, &QComboBox::currentIndexChanged, this, &FilterFrame::changed);
  connect(letter_, &QCheckBox::toggled, this, &FilterFrame::changed);
  connect(clear_, &QPushButton::clicked, this, &FilterFrame::clearPressed);
}

QLineEdit* FilterFrame::makeBox(Box index, const QString& accessibleName, const QString& toolTip,
                                int width) {
  const bool keepsCase = index == kEquipment || index == kRemarks;
  QLineEdit* box = keepsCase ? new QLineEdit(this) : new CapitalBox(this);
  box->setObjectName(QStringLiteral("Text4(%1)").arg(static_cast<int>(index)));
  box->setAccessibleName(accessibleName);
  box->setToolTip(toolTip);
  if (width > 0) {
    // The designed width is for the usual font; what larger letters need beyond
    // their smallest size is added.
    const auto text = [&] { return box->fontMetrics().horizontalAdvance(longestText(index)); };
    narrowLetters(*box, text(), width - kBoxFrame);
    box->setFixedWidth(qMax(width, text() + kBoxFrame));
  } else {
    box->setMinimumWidth(48);
  }
  connect(box, &QLineEdit::textChanged, this, &FilterFrame::changed);
  boxes_[static_cast<std::size_t>(index)] = box;
  return box;
}

ListFilter FilterFrame::filter() const {
  const auto text = [this](Box index) { return box(index)->text().toStdString(); };
  ListFilter filter;
  filter.photo = static_cast<PhotoFilter>(photo_->currentIndex());
  filter.timeComparison = static_cast<TimeComparison>(timeComparison_->currentIndex());
  filter.time = text(kTime);
  filter.flight = text(kFlight);
  filter.registration = text(kRegistration);
  filter.airport = text(kAirport);
  filter.equipment = text(kEquipment);
  filter.remarks = text(kRemarks);
  filter.unknownAirlineOnly = letter_->isChecked();
  return filter;
}

void FilterFrame::choose(PhotoFilter photo) { photo_->setCurrentIndex(static_cast<int>(photo)); }

void FilterFrame::choose(TimeComparison comparison) {
  timeComparison_->setCurrentIndex(static_cast<int>(comparison));
}

void FilterFrame::selectFirstEntries() {
  choose(PhotoFilter::all);
  choose(TimeComparison::prefix);
}

void FilterFrame::clearAll() {
  letter_->setChecked(false);
  for (QLineEdit* each : boxes_) {
    if (each != nullptr) each->clear();
  }
  selectFirstEntries();
}

void FilterFrame::setCount(std::size_t shownLines) {
  const QString count = QString::number(shownLines);
  count_->setText(count);
  // A screen reader reads a label's name and not its text.
  count_->setAccessibleName(tr("Number of shown lines: %1").arg(count));
}

bool FilterFrame::canFilterBy(ListColumn column, const QString& text) {
  if (column == kListPict) return photoFilterOf(text) != PhotoFilter::all;
  return column != kListLine;
}

void FilterFrame::filterBy(ListColumn column, const QString& text) {
  switch (column) {
    case kListFlight:
      box(kFlight)->setText(text);
      break;
    case kListPict:
      if (canFilterBy(column, text)) choose(photoFilterOf(text));
      break;
    case kListRegistration:
      box(kRegistration)->setText(text);
      break;
    case kListDeparture:
    case kListDestination:
      box(kAirport)->setText(text);
      break;
    case kListEquipment:
      box(kEquipment)->setText(text);
      break;
    case kListRemarks:
      box(kRemarks)->setText(text);
      break;
    case kListTime:
      choose(TimeComparison::prefix);
      box(kTime)->setText(text);
      break;
    default:
      break;
  }
}

}  // namespace vel
