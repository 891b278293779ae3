#include "web/ui/findable_text.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QFontDatabase>
#include <QHBoxLayout>
#include <QMenu>
#include <QScrollBar>
#include <QTextBlock>
#include <QToolButton>
#include <memory>
#include <string_view>
#include <utility>

#include "core/ui/japanese_fonts.h"

namespace vel {
namespace {

// Lines of any length, and any number of them, may come over the air. The time
// to lay a line out grows with its length, so longer ones are broken; memory
// grows with their number, so what follows so many is left out. Real logs stay
// far below both.
constexpr std::size_t kLongestLine = 8000;  // bytes
constexpr int kMostLines = 500'000;

// So much is added at once: a few milliseconds of work.
constexpr int kPieceLines = 1000;
constexpr std::size_t kPieceSize = std::size_t{64} << 10;

// Where a line that is longer than allowed is broken: between two characters,
// and not between the two of a line end.
std::size_t beforeBreak(std::string_view line) {
  std::size_t size = kLongestLine;
  while (size > 1 && (static_cast<unsigned char>(line[size]) & 0xC0) == 0x80) --size;
  if (size > 1 && line[size - 1] == '\r') --size;
  return size;
}

// A family in which a Japanese letter is as wide as two Latin ones.
QFont fixedPitchFont() {
  QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
  const QStringList present = QFontDatabase::families(QFontDatabase::Japanese);
  for (const QString& family : japaneseFamilies(JapaneseFont::gothic)) {
    if (!present.contains(family)) continue;
    font.setFamilies({family});
    break;
  }
  font.setStyleHint(QFont::Monospace);
  font.setFixedPitch(true);
  // Half-width letters of these families are narrow and fine.
  font.setPointSizeF(QApplication::font().pointSizeF() + 1);
  return font;
}

}  // namespace

FindableText::FindableText(QWidget* parent) : QPlainTextEdit(parent) {
  setReadOnly(true);
  setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  setUndoRedoEnabled(false);
  setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  setFont(fixedPitchFont());
  setTabChangesFocus(true);
  // What was found stays in sight while the focus is in the find bar.
  QPalette colours = palette();
  colours.setColor(QPalette::Inactive, QPalette::Highlight,
                   colours.color(QPalette::Active, QPalette::Highlight));
  colours.setColor(QPalette::Inactive, QPalette::HighlightedText,
                   colours.color(QPalette::Active, QPalette::HighlightedText));
  setPalette(colours);

  bar_ = makeFindBar();
  bar_->hide();
  QWidget* window = parent->window();
  connect(new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_F), window), &QShortcut::activated, this,
          &FindableText::openFindBar);
  connect(new QShortcut(QKeySequence(Qt::Key_F3), window), &QShortcut::activated, this,
          &FindableText::findNext);
  connect(new QShortcut(QKeySequence(Qt::SHIFT | Qt::Key_F3), window), &QShortcut::activated, this,
          &FindableText::findPrevious);
  escape_ = new QShortcut(QKeySequence(Qt::Key_Escape), window);
  escape_->setEnabled(false);
  connect(escape_, &QShortcut::activated, this, &FindableText::closeFindBar);
}

QWidget* FindableText::makeFindBar() {
  auto* bar = new QFrame(this);
  bar->setObjectName(QStringLiteral("Frame2"));
  bar->setAutoFillBackground(true);
  bar->setBackgroundRole(QPalette::Window);
  bar->setCursor(Qt::ArrowCursor);

  searched_ = new QLineEdit(bar);
  searched_->setObjectName(QStringLiteral("Text2"));
  searched_->setAccessibleName(tr("Text to find"));
  searched_->setToolTip(tr("Text to find in this log\nこのログの中で検索する文字"));
  searched_->setPlaceholderText(tr("Find"));
  searched_->setClearButtonEnabled(true);
  searched_->setMaximumWidth(260);
  outcome_ = new QLabel(bar);
  outcome_->setObjectName(QStringLiteral("Label2"));
  outcome_->setAccessibleName(tr("Outcome of the search"));

  auto* line = new QHBoxLayout(bar);
  line->setContentsMargins(6, 3, 3, 3);
  line->setSpacing(3);
  line->addWidget(searched_, 1);
  const auto addButton = [&](const QString& name, Qt::ArrowType arrow, const QString& toolTip,
                             void (FindableText::*handler)()) {
    auto* button = new QToolButton(bar);
    button->setObjectName(name);
    button->setAutoRaise(true);
    if (arrow == Qt::NoArrow) {
      button->setText(QStringLiteral("×"));
    } else {
      button->setArrowType(arrow);
    }
    button->setFocusPolicy(Qt::TabFocus);
    button->setAccessibleName(toolTip.section(QLatin1Char('\n'), 0, 0));
    button->setToolTip(toolTip);
    connect(button, &QToolButton::clicked, this, handler);
    line->addWidget(button);
  };
  addButton(QStringLiteral("Command4"), Qt::UpArrow, tr("Previous place (Shift+F3)\n前を検索"),
            &FindableText::findPrevious);
  addButton(QStringLiteral("Command5"), Qt::DownArrow, tr("Next place (F3)\n次を検索"),
            &FindableText::findNext);
  line->addWidget(outcome_, 1);
  addButton(QStringLiteral("Command6"), Qt::NoArrow, tr("Close the find bar (Esc)\n検索を閉じる"),
            &FindableText::closeFindBar);

  connect(searched_, &QLineEdit::textChanged, this, &FindableText::findTyped);
  connect(
      new QShortcut(QKeySequence(Qt::Key_Return), searched_, nullptr, nullptr, Qt::WidgetShortcut),
      &QShortcut::activated, this, &FindableText::findNext);
  connect(new QShortcut(QKeySequence(Qt::SHIFT | Qt::Key_Return), searched_, nullptr, nullptr,
                        Qt::WidgetShortcut),
          &QShortcut::activated, this, &FindableText::findPrevious);
  return bar;
}

void FindableText::takeText(std::string text) {
  const bool goesOn = !text_.empty() && text.starts_with(text_);
  text_ = std::move(text);
  if (goesOn) return;
  clear();
  filled_ = 0;
  lines_ = 0;
  full_ = false;
}

bool FindableText::fill(std::chrono::steady_clock::time_point deadline) {
  while (filled_ < text_.size() && !full_) {
    append(QString::fromStdString(nextPiece()));
    if (std::chrono::steady_clock::now() >= deadline) break;
  }
  return filled_ < text_.size() && !full_;
}

void FindableText::goTo(std::size_t offset) {
  int line = 0;
  for (std::size_t at = 0; at < offset && at < filled_; ++line) at += shownLineAt(at).size;
  const QTextBlock block = document()->findBlockByNumber(line);
  if (!block.isValid()) return;
  moveCursor(QTextCursor::End);
  setTextCursor(QTextCursor(block));
  setFocus();
}

FindableText::ShownLine FindableText::shownLineAt(std::size_t offset) const {
  const std::string_view ahead = std::string_view(text_).substr(offset, kLongestLine + 1);
  const std::size_t size = ahead.find('\n') + 1;
  if (size > 0) return {size, true};
  const bool isWhole = ahead.size() <= kLongestLine;
  return {isWhole ? ahead.size() : beforeBreak(ahead), isWhole};
}

std::string FindableText::nextPiece() {
  std::string piece;
  for (int lines = 0; lines < kPieceLines && piece.size() < kPieceSize; ++lines) {
    if (filled_ == text_.size()) break;
    if (lines_ == kMostLines) {
      full_ = true;
      piece += "[The rest is not shown. 以降は表示されません。]";
      break;
    }
    ++lines_;
    const ShownLine line = shownLineAt(filled_);
    piece += std::string_view(text_).substr(filled_, line.size);
    if (!line.isWhole) piece += '\n';
    filled_ += line.size;
  }
  return piece;
}

void FindableText::append(const QString& piece) {
  // A cursor at the end would follow what is added there.
  QTextCursor reader = textCursor();
  const int anchor = reader.anchor();
  const int position = reader.position();
  const int down = verticalScrollBar()->value();
  QTextCursor end(document());
  end.movePosition(QTextCursor::End);
  end.insertText(piece);
  if (textCursor().anchor() == anchor && textCursor().position() == position) return;
  reader.setPosition(anchor);
  reader.setPosition(position, QTextCursor::KeepAnchor);
  setTextCursor(reader);
  verticalScrollBar()->setValue(down);
}

void FindableText::openFindBar() {
  const QString selected = textCursor().selectedText();
  bar_->show();
  placeFindBar();
  escape_->setEnabled(true);
  outcome_->clear();
  if (!selected.isEmpty() && !selected.contains(QChar::ParagraphSeparator)) {
    searched_->setText(selected);
  }
  searched_->setFocus(Qt::ShortcutFocusReason);
  searched_->selectAll();
}

void FindableText::closeFindBar() {
  bar_->hide();
  placeFindBar();
  escape_->setEnabled(false);
  setFocus(Qt::OtherFocusReason);
}

void FindableText::placeFindBar() {
  const int height = bar_->isHidden() ? 0 : bar_->sizeHint().height();
  setViewportMargins(0, height, 0, 0);
  const QRect inside = contentsRect();
  bar_->setGeometry(viewport()->x(), inside.top(), viewport()->width(), height);
}

void FindableText::resizeEvent(QResizeEvent* event) {
  QPlainTextEdit::resizeEvent(event);
  placeFindBar();
}

void FindableText::contextMenuEvent(QContextMenuEvent* event) {
  const std::unique_ptr<QMenu> menu(createStandardContextMenu(event->pos()));
  menu->setObjectName(QStringLiteral("TextMenu"));
  menu->addSeparator();
  menu->addAction(tr("&Find...\tCtrl+F"), this, &FindableText::openFindBar);
  menu->exec(event->globalPos());
}

void FindableText::findTyped() {
  // The place found so far may go on matching as the text grows.
  QTextCursor start = textCursor();
  start.setPosition(start.selectionStart());
  findFrom(start);
}

void FindableText::findNext() {
  if (searched_->text().isEmpty()) {
    openFindBar();
    return;
  }
  findFrom(textCursor());
}

void FindableText::findPrevious() {
  if (searched_->text().isEmpty()) {
    openFindBar();
    return;
  }
  findFrom(textCursor(), QTextDocument::FindBackward);
}

void FindableText::findFrom(QTextCursor start, QTextDocument::FindFlags direction) {
  outcome_->clear();
  const QString searched = searched_->text();
  if (searched.isEmpty()) {
    setTextCursor(start);
    return;
  }
  const bool backward = direction.testFlag(QTextDocument::FindBackward);
  QTextCursor found = document()->find(searched, start, direction);
  if (found.isNull()) {
    start.movePosition(backward ? QTextCursor::End : QTextCursor::Start);
    found = document()->find(searched, start, direction);
    if (!found.isNull()) {
      outcome_->setText(backward ? tr("Went on from the end. 末尾から検索しました。")
                                 : tr("Went on from the beginning. 先頭から検索しました。"));
    }
  }
  if (found.isNull()) {
    outcome_->setText(tr("Not found. 見つかりません。"));
    return;
  }
  setTextCursor(found);
  ensureCursorVisible();
}

}  // namespace vel
