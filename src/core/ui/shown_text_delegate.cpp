#include "core/ui/shown_text_delegate.h"

#include <algorithm>

#include "core/ui/plain_text.h"

namespace vel {
namespace {

// Hardly a letter is narrower, in pixels, and a text of such letters alone is
// none that anybody wrote.
constexpr int kNarrowLetter = 3;
constexpr int kFewest = 16;

}  // namespace

void ShownTextDelegate::initStyleOption(QStyleOptionViewItem* option,
                                        const QModelIndex& index) const {
  QStyledItemDelegate::initStyleOption(option, index);
  const int letters = std::max(option->rect.width() / kNarrowLetter, kFewest);
  option->text = shownText(option->text, letters);
  // The mark of the current cell, without the colour of a selected one, would
  // look like a selection.
  if (!option->state.testFlag(QStyle::State_Selected)) {
    option->state.setFlag(QStyle::State_HasFocus, false);
  }
}

}  // namespace vel
