#include "core/ui/japanese_fonts.h"

#include <QFontDatabase>
#include <algorithm>

namespace vel {
namespace {

// Each by either of its names, Japanese or English, whichever the platform
// lists it under.
QStringList familiesOf(JapaneseFont font) {
  QStringList families =
      font == JapaneseFont::mincho
          ? QStringList{QStringLiteral("ＭＳ 明朝"), QStringLiteral("MS Mincho"),
                        QStringLiteral("IPAMincho"), QStringLiteral("IPA明朝"),
                        QStringLiteral("Yu Mincho"), QStringLiteral("游明朝")}
          : QStringList{QStringLiteral("ＭＳ ゴシック"), QStringLiteral("MS Gothic"),
                        QStringLiteral("IPAGothic"),     QStringLiteral("IPAゴシック"),
                        QStringLiteral("IPA ゴシック"),  QStringLiteral("BIZ UDGothic"),
                        QStringLiteral("VL Gothic"),     QStringLiteral("Noto Sans Mono CJK JP"),
                        QStringLiteral("TakaoGothic")};
  const QStringList japanese = QFontDatabase::families(QFontDatabase::Japanese);
  const auto fixed = std::find_if(japanese.begin(), japanese.end(), [](const QString& family) {
    return QFontDatabase::isFixedPitch(family);
  });
  if (fixed != japanese.end()) families << *fixed;
  if (!japanese.isEmpty()) families << japanese.front();
  return families;
}

}  // namespace

const QStringList& japaneseFamilies(JapaneseFont font) {
  static const QStringList mincho = familiesOf(JapaneseFont::mincho);
  static const QStringList gothic = familiesOf(JapaneseFont::gothic);
  return font == JapaneseFont::mincho ? mincho : gothic;
}

bool canShowJapanese() { return !QFontDatabase::families(QFontDatabase::Japanese).isEmpty(); }

}  // namespace vel
