#include "app/ui/choice_button.h"

#include <QStyleOptionButton>
#include <QStyleOptionFocusRect>
#include <QStylePainter>

namespace vel {
namespace {

constexpr int kMargin = 6;
constexpr int kGap = 8;

}  // namespace

ChoiceButton::ChoiceButton(const QString& text, QWidget* parent) : QPushButton(text, parent) {
  setIcon(style()->standardIcon(QStyle::SP_CommandLink));
  setFlat(true);
  QFont letters = font();
  letters.setBold(true);
  setFont(letters);
}

int ChoiceButton::textIndent() const { return kMargin + iconSize().width() + kGap; }

QSize ChoiceButton::sizeHint() const {
  const QSize words = fontMetrics().size(Qt::TextShowMnemonic, text());
  return {textIndent() + words.width() + kMargin,
          qMax(words.height(), iconSize().height()) + 2 * kMargin};
}

void ChoiceButton::paintEvent(QPaintEvent*) {
  QStylePainter painter(this);
  QStyleOptionButton option;
  initStyleOption(&option);
  // Flat unless the mouse is over it.
  option.features.setFlag(QStyleOptionButton::Flat, !underMouse() && !isDown());
  painter.drawControl(QStyle::CE_PushButtonBevel, option);
  const QRect place(kMargin, (height() - iconSize().height()) / 2, iconSize().width(),
                    iconSize().height());
  icon().paint(&painter, place, Qt::AlignCenter, isEnabled() ? QIcon::Normal : QIcon::Disabled);
  painter.drawItemText(rect().adjusted(textIndent(), 0, -kMargin, 0),
                       Qt::AlignLeft | Qt::AlignVCenter | Qt::TextShowMnemonic, palette(),
                       isEnabled(), text(), QPalette::ButtonText);
  if (!hasFocus()) return;
  QStyleOptionFocusRect focus;
  focus.initFrom(this);
  focus.rect = rect().adjusted(2, 2, -2, -2);
  focus.backgroundColor = palette().color(QPalette::Window);
  painter.drawPrimitive(QStyle::PE_FrameFocusRect, focus);
}

}  // namespace vel
