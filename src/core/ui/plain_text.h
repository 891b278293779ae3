#pragma once

#include <QLabel>
#include <QString>
#include <string_view>

namespace vel {

// What comes from a log, a table, a setting or a file name was written by
// strangers. A window shows it through one of these functions: it is text and
// nothing else, and no longer than what can be seen of it.

/// The longest text (characters) that is laid out in one piece.
constexpr qsizetype kLongestShown = 1000;
/// The longest text in a frame's title, which is never narrower than it.
constexpr qsizetype kLongestTitle = 24;
/// The longest text of an entry in a chooser or a menu.
constexpr qsizetype kLongestEntry = 100;

/// The text as it is painted: control characters, line ends and marks that
/// turn the direction of writing are replaced by visible signs, one for one. A
/// longer text is cut to `longest` characters, the last of which is "…".
[[nodiscard]] QString shownText(QStringView text, qsizetype longest = kLongestShown);
/// The same of UTF-8.
[[nodiscard]] QString shownText(std::string_view utf8, qsizetype longest = kLongestShown);

/// A tool tip that is never taken as markup. Line feeds stay; long lines are
/// folded.
[[nodiscard]] QString plainToolTip(QStringView text);

/// A text for where an ampersand makes the next letter a shortcut: menus,
/// buttons, titles of frames, labels with a partner.
[[nodiscard]] QString withoutShortcut(QString text);

/// The title of a frame around what was looked up for a key.
[[nodiscard]] QString frameTitle(std::string_view utf8);

/// A window's title, in which "[*]" stays as it is.
[[nodiscard]] QString plainWindowTitle(QStringView text);

/// The text of a message box: line ends stay, and what has no blank to break a
/// line at may be broken behind a comma or anywhere.
[[nodiscard]] QString plainMessage(std::string_view utf8);

/// Shows a text in a label, as it stands.
void showPlainText(QLabel& label, const QString& text);

}  // namespace vel
