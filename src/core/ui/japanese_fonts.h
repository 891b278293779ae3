#pragma once

#include <QStringList>

namespace vel {

enum class JapaneseFont {
  mincho,  ///< "ＭＳ 明朝"
  gothic,  ///< "ＭＳ ゴシック", fixed pitch
};

/// The families to draw Japanese text in, the best one first: the given one,
/// then the IPA font of that kind, then a fixed-pitch one and any one that has
/// Japanese letters. Those of the names that are known may be missing.
[[nodiscard]] const QStringList& japaneseFamilies(JapaneseFont font);

}  // namespace vel
