#include "web/ui/engine_row.h"

#include <QHBoxLayout>
#include <QMenu>
#include <utility>

namespace vel {
namespace {

constexpr int kRawLogIndex = 3;
constexpr int kLargeLetters = 21;  // in pixels

}  // namespace

EngineRow::EngineRow(const Texts& texts, QWidget* parent) : QWidget(parent) {
  chooser_ = new QComboBox(this);
  chooser_->setObjectName(texts.chooserName);
  chooser_->setAccessibleName(texts.chooserAccessible);
  chooser_->setToolTip(texts.chooserAccessible);
  chooser_->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  // Letters much larger than the usual ones would be cut.
  chooser_->setMinimumContentsLength(fontMetrics().height() < kLargeLetters ? 4 : 8);
  button_ = makeLookUpButton(this, texts.buttonIndex, texts.buttonCaption, texts.buttonToolTip);
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(4);
  row->addWidget(chooser_, 1);
  row->addWidget(button_);
}

void EngineRow::offerSettings(std::function<void()> open) {
  chooser_->setContextMenuPolicy(Qt::CustomContextMenu);
  connect(chooser_, &QWidget::customContextMenuRequested, this,
          [this, open = std::move(open)](const QPoint& position) {
            QMenu menu(chooser_);
            menu.setObjectName(QStringLiteral("EngineMenu"));
            menu.addAction(tr("Search &engines..."), this, open);
            menu.exec(chooser_->mapToGlobal(position));
          });
}

EngineRow* makeFlightSearchRow(int buttonIndex,
                               const std::vector<EngineEntry<FlightEngine>>& engines,
                               QWidget* parent) {
  auto* row = new EngineRow({QStringLiteral("Combo3"), EngineRow::tr("Flight search engine"),
                             buttonIndex, QStringLiteral("Search"),
                             EngineRow::tr("Looks this flight up on the web\nこの便をWebで検索")},
                            parent);
  row->setEngines(engines);
  return row;
}

QPushButton* makeLookUpButton(QWidget* parent, int index, const QString& caption,
                              const QString& toolTip) {
  auto* button = new QPushButton(caption, parent);
  button->setObjectName(QStringLiteral("Command7(%1)").arg(index));
  button->setAccessibleName(toolTip.section(QLatin1Char('\n'), 0, 0));
  button->setToolTip(toolTip);
  QString shown = caption;
  shown.replace(QLatin1String("&&"), QLatin1String("&"));
  button->setFixedWidth(button->fontMetrics().horizontalAdvance(shown) + 22);
  return button;
}

QPushButton* makeRawLogButton(QWidget* parent) {
  return makeLookUpButton(
      parent, kRawLogIndex, QStringLiteral("Raw log"),
      EngineRow::tr("Shows the raw messages of this aircraft\nThe decoder writes "
                    "them to logs/EachLogs\n"
                    "この機体の生ログを表示\n"
                    "デコーダーがlogs/EachLogsに書き出したもの"));
}

}  // namespace vel
