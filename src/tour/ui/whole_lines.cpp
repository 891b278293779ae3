#include "tour/ui/whole_lines.h"

#include <QPaintEvent>
#include <QPainter>
#include <QTextBlock>
#include <QTextLayout>
#include <cmath>

namespace vel {
namespace {

constexpr int kTextMargin = 1;

}  // namespace

WholeLines::WholeLines(QWidget* parent) : QPlainTextEdit(parent) {
  setReadOnly(true);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  document()->setDocumentMargin(kTextMargin);
}

int WholeLines::heightFor(const QString& text, int width) const {
  const int frame = 2 * frameWidth();
  const double lineWidth = width - frame - 2 * kTextMargin;
  // Above the text, below it, and what the text box keeps free of lines.
  double height = 3 * kTextMargin + 1;
  QTextOption option;
  option.setWrapMode(wordWrapMode());
  for (const QString& paragraph : text.split(QLatin1Char('\n'))) {
    QTextLayout layout(paragraph, font());
    layout.setTextOption(option);
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
      line.setLineWidth(lineWidth);
      height += line.height();
    }
    layout.endLayout();
  }
  return static_cast<int>(std::ceil(height)) + frame;
}

int WholeLines::endOfWholeLines() const {
  const int height = viewport()->height();
  double end = 0;
  for (QTextBlock block = firstVisibleBlock(); block.isValid(); block = block.next()) {
    const QRectF place = blockBoundingGeometry(block).translated(contentOffset());
    for (int i = 0; i < block.layout()->lineCount(); ++i) {
      const double bottom = place.top() + block.layout()->lineAt(i).rect().bottom();
      if (bottom > height) return static_cast<int>(std::floor(end));
      end = bottom;
    }
  }
  return height;
}

void WholeLines::paintEvent(QPaintEvent* event) {
  const QRect whole(0, 0, viewport()->width(), endOfWholeLines());
  QPaintEvent part(event->region() & whole);
  if (!part.region().isEmpty()) QPlainTextEdit::paintEvent(&part);
}

}  // namespace vel
