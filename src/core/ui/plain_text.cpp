#include "core/ui/plain_text.h"

#include <QTextDocument>
#include <algorithm>

namespace vel {
namespace {

constexpr QChar kEllipsis(0x2026);
constexpr QChar kNoSign(0xFFFD);
constexpr QChar kWordJoiner(0x2060);
constexpr QChar kBreakHere(0x200B);

constexpr qsizetype kLongestToolTip = 1000;
constexpr qsizetype kToolTipLine = 100;
constexpr qsizetype kLongestMessage = 6000;
// As wide as a message box gets, about.
constexpr qsizetype kMessageWord = 40;

// What is seen of a character that has no form of its own.
QChar shownCharacter(QChar character) {
  const char16_t code = character.unicode();
  if (code < 0x20) return QChar(static_cast<char16_t>(0x2400 + code));
  if (code < 0x7F) return character;
  if (code == 0x7F) return QChar(0x2421);
  const bool turnsDirection = code == 0x200E || code == 0x200F || code == 0x061C ||
                              (code >= 0x202A && code <= 0x202E) ||
                              (code >= 0x2066 && code <= 0x2069);
  const bool endsLine = code == 0x2028 || code == 0x2029;
  const bool isControl = code >= 0x80 && code < 0xA0;
  return turnsDirection || endsLine || isControl ? kNoSign : character;
}

// The first `longest` characters; a pair of surrogates is not torn apart.
QStringView cut(QStringView text, qsizetype longest) {
  if (text.size() <= longest) return text;
  qsizetype end = std::max(longest, qsizetype{1}) - 1;
  if (end > 0 && text[end - 1].isHighSurrogate()) --end;
  return text.first(end);
}

enum class LineFeeds { asSigns, kept };

QString shown(QStringView text, qsizetype longest, LineFeeds lineFeeds) {
  const QStringView kept = cut(text, longest);
  QString result;
  result.reserve(kept.size() + 1);
  for (const QChar character : kept) {
    const bool lineFeed = lineFeeds == LineFeeds::kept && character == QLatin1Char('\n');
    result.append(lineFeed ? character : shownCharacter(character));
  }
  if (kept.size() < text.size()) result.append(kEllipsis);
  return result;
}

// UTF-8 of at least so many characters, but no more of it than is needed.
QString beginning(std::string_view utf8, qsizetype characters) {
  // No character has more than four bytes; a torn last one is cut off again.
  const auto most = static_cast<std::size_t>(characters + 1) * 4;
  const std::string_view part = utf8.substr(0, most);
  return QString::fromUtf8(part.data(), static_cast<qsizetype>(part.size()));
}

// Puts `mark` where a line without blanks gets longer than `longest`.
QString folded(const QString& text, qsizetype longest, QChar mark) {
  QString result;
  result.reserve(text.size() + text.size() / longest + 1);
  qsizetype length = 0;
  for (qsizetype i = 0; i < text.size(); ++i) {
    result.append(text[i]);
    length = text[i].isSpace() ? 0 : length + 1;
    const bool comma = text[i] == QLatin1Char(',') && length >= longest / 2;
    if ((comma || length >= longest) && !text[i].isHighSurrogate()) {
      result.append(mark);
      length = 0;
    }
  }
  return result;
}

// Breaks lines at a blank where there is one near their end.
QString inLines(const QString& text, qsizetype longest) {
  QString result;
  qsizetype from = 0;
  while (from < text.size()) {
    const qsizetype lineFeed = text.indexOf(QLatin1Char('\n'), from);
    qsizetype end = lineFeed < 0 ? text.size() : lineFeed;
    bool fold = false;
    if (end - from > longest) {
      fold = true;
      end = from + longest;
      const qsizetype blank = text.lastIndexOf(QLatin1Char(' '), end - 1);
      if (blank > from + longest / 2) end = blank + 1;
      if (text[end - 1].isHighSurrogate()) ++end;
    }
    result.append(QStringView(text).sliced(from, end - from));
    if (fold || lineFeed >= 0) result.append(QLatin1Char('\n'));
    from = fold || lineFeed < 0 ? end : end + 1;
  }
  return result;
}

}  // namespace

QString shownText(QStringView text, qsizetype longest) {
  return shown(text, longest, LineFeeds::asSigns);
}

QString shownText(std::string_view utf8, qsizetype longest) {
  return shown(beginning(utf8, longest), longest, LineFeeds::asSigns);
}

QString plainToolTip(QStringView text) {
  QString tip = inLines(shown(text, kLongestToolTip, LineFeeds::kept), kToolTipLine);
  if (Qt::mightBeRichText(tip)) {
    // Behind these, a sign without width keeps the toolkit from seeing a tag.
    tip.replace(QLatin1Char('<'), QLatin1Char('<') + QString(kWordJoiner));
    tip.replace(QLatin1Char('&'), QLatin1Char('&') + QString(kWordJoiner));
  }
  return tip;
}

QString withoutShortcut(QString text) {
  return text.replace(QLatin1Char('&'), QLatin1String("&&"));
}

QString frameTitle(std::string_view utf8) {
  return withoutShortcut(shownText(utf8, kLongestTitle));
}

QString plainWindowTitle(QStringView text) {
  return shownText(text).replace(QLatin1String("[*]"), QLatin1String("[*][*]"));
}

QString plainMessage(std::string_view utf8) {
  QString text = beginning(utf8, kLongestMessage);
  text.replace(QLatin1String("\r\n"), QLatin1String("\n"));
  return folded(shown(text, kLongestMessage, LineFeeds::kept), kMessageWord, kBreakHere);
}

void showPlainText(QLabel& label, const QString& text) {
  // First of all: a label looks at its text as soon as it has it.
  label.setTextFormat(Qt::PlainText);
  label.setText(shownText(text));
}

}  // namespace vel
