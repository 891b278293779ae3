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

namespace vel {
namespace {

// Lines of any length, and any number of them, may come over the air. The time
// to lay a line out grows with its length, so longer ones are broken; memory
// grows with their number, so what follows so many is left out. Real logs stay
// far below both.
constexpr qsizetype kLongestLine = 8000;
constexpr int kMostLines = 500'000;

// A family in which a Japanese letter is as wide as two Latin ones.
QFont fixedPitchFont() {
  QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
  const QStringList present = QFontDatabase::families(QFontDatabase::Japanese);
  const QStringList known = {QStringLiteral("ＭＳ ゴシック"),
                             QStringLiteral("MS Gothic"),
                             QStringLiteral("IPAGothic"),
                             QStringLiteral("IPA ゴシック"),
                             QStringLiteral("Noto Sans Mono CJK JP"),
                             QStringLiteral("VL Gothic"),
                             QStringLiteral("TakaoGothic")};
  for (const QString& family : known) {
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

QString withinLimits(const QString& text) {
  QString broken;
  qsizetype copied = 0;
  qsizetype lineStart = 0;
  int lines = 0;
  while (lineStart < text.size()) {
    if (++lines > kMostLines) {
      broken += QStringView(text).mid(copied, lineStart - copied);
      return broken + QStringLiteral("[The rest is not shown. 以降は表示されません。]");
    }
    const qsizetype within = QStringView(text).mid(lineStart, kLongestLine + 1).indexOf(u'\n');
    qsizetype next = within < 0 ? text.size() : lineStart + within + 1;
    if (within < 0 && next - lineStart > kLongestLine) {
      next = lineStart + kLongestLine;
      broken += QStringView(text).mid(copied, next - copied);
      broken += QLatin1Char('\n');
      copied = next;
    }
    lineStart = next;
  }
  if (copied == 0) return text;
  broken += QStringView(text).mid(copied);
  return broken;
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

void FindableText::showText(const QString& text) {
  if (text == shown_) return;
  const bool goesOn = !shown_.isEmpty() && text.startsWith(shown_);
  // A cursor would follow the change to the beginning.
  const int anchor = textCursor().anchor();
  const int position = textCursor().position();
  const int down = verticalScrollBar()->value();
  shown_ = text;
  setPlainText(withinLimits(text));
  if (!goesOn) return;
  QTextCursor cursor = textCursor();
  cursor.setPosition(anchor);
  cursor.setPosition(position, QTextCursor::KeepAnchor);
  setTextCursor(cursor);
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
  findFrom(start, false);
}

void FindableText::findNext() {
  if (searched_->text().isEmpty()) {
    openFindBar();
    return;
  }
  findFrom(textCursor(), false);
}

void FindableText::findPrevious() {
  if (searched_->text().isEmpty()) {
    openFindBar();
    return;
  }
  findFrom(textCursor(), true);
}

void FindableText::findFrom(QTextCursor start, bool backward) {
  outcome_->clear();
  const QString searched = searched_->text();
  if (searched.isEmpty()) {
    setTextCursor(start);
    return;
  }
  const QTextDocument::FindFlags direction =
      backward ? QTextDocument::FindBackward : QTextDocument::FindFlags();
  QTextCursor found = document()->find(searched, start, direction);
  if (found.isNull()) {
    start.movePosition(backward ? QTextCursor::End : QTextCursor::Start);
    found = document()->find(searched, start, direction);
    if (!found.isNull()) {
      outcome_->setText(backward ? tr("Went on from the end") : tr("Went on from the beginning"));
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
