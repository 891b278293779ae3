#include "history/query.h"

#include <algorithm>

namespace vel {
namespace {

// One hyphen of a registration may be missing.
std::string withoutHyphens(std::string_view text) {
  std::string kept(text);
  std::erase(kept, '-');
  return kept;
}

// True where a character has only one form in the bytes of a log, so that
// lines can be found by it. Code page 932 has several forms of some signs and
// kanji.
bool hasOneForm(const Encoding& encoding, std::string_view bytes) {
  if (isAscii(bytes)) return true;
  if (encoding.name() == "UTF-8") return true;
  if (bytes.size() != 2 || !encoding.isCodePage932()) return false;
  const auto lead = static_cast<unsigned char>(bytes[0]);
  return (lead >= 0x82 && lead <= 0x86) || (lead >= 0x88 && lead <= 0x9F) ||
         (lead >= 0xE0 && lead <= 0xEA);
}

// The longest run of bytes that stand in every line with the text.
std::string sureBytes(const Encoding& encoding, std::string_view text, bool ignoreCase) {
  std::string best;
  std::string run;
  while (!text.empty()) {
    const std::string_view character = Left(text, 1);
    text.remove_prefix(character.size());
    const std::optional<std::string> bytes = encoding.encode(character);
    const bool hasCase = ignoreCase && !isAscii(character) &&
                         (toLower(character) != character || toUpper(character) != character);
    if (bytes && !hasCase && hasOneForm(encoding, *bytes)) {
      run += *bytes;
    } else {
      run.clear();
    }
    if (run.size() > best.size()) best = run;
  }
  // The text is compared with bytes that went through the same function.
  if (ignoreCase) std::transform(best.begin(), best.end(), best.begin(), foldedByte);
  return best;
}

}  // namespace

DayRange lastDays(std::chrono::local_days today, int count) {
  return {today - std::chrono::days(count - 1), today};
}

QueryProblem problemOf(const HistoryQuery& query, const Encoding& encoding) {
  const std::string_view trimmed = Trim(query.text);
  const bool empty = query.meaning == SearchMeaning::registration ? withoutHyphens(trimmed).empty()
                     : query.meaning == SearchMeaning::anyText    ? query.text.empty()
                                                                  : trimmed.empty();
  if (empty) return QueryProblem::emptyText;
  if (!query.lists && !query.hfdl && !query.rawLogs) return QueryProblem::noLogs;
  if (query.days.first && query.days.last && *query.days.last < *query.days.first) {
    return QueryProblem::daysBackwards;
  }
  if (!encoding.encode(query.text)) return QueryProblem::notInEncoding;
  return QueryProblem::none;
}

std::string hintFor(QueryProblem problem) {
  switch (problem) {
    case QueryProblem::emptyText:
      return "Type what to search for. 検索する文字を入力してください。";
    case QueryProblem::noLogs:
      return "Choose at least one kind of log. ログの種類を選んでください。";
    case QueryProblem::daysBackwards:
      return "The first day lies behind the last one. 期間の開始日が終了日より後です。";
    case QueryProblem::notInEncoding:
      return "Nothing found: no log can hold this text. "
             "見つかりません。ログの文字コードにない文字が含まれています。";
    case QueryProblem::none:
      break;
  }
  return {};
}

SearchText::SearchText(const HistoryQuery& query, const Encoding& encoding)
    : encoding_(encoding),
      text_(query.meaning == SearchMeaning::anyText ? std::string_view(query.text)
                                                    : Trim(query.text)),
      ascii_(isAscii(text_)),
      ignoreCase_(query.ignoreCase),
      isRegistration_(query.meaning == SearchMeaning::registration),
      isFlight_(query.meaning == SearchMeaning::flight) {
  if (ignoreCase_) text_ = toLower(text_);
  std::vector<std::string_view> pieces{text_};
  if (isRegistration_) {
    // Wherever the one hyphen stands in a log: it splits one half at most.
    text_ = withoutHyphens(text_);
    const std::string_view firstHalf = Left(text_, length(text_) / 2);
    pieces = {firstHalf, std::string_view(text_).substr(firstHalf.size())};
  }
  for (const std::string_view piece : pieces) {
    const std::string bytes = sureBytes(encoding_, piece, ignoreCase_);
    if (bytes.empty()) {
      scanBytes_.clear();
      break;
    }
    scanBytes_.push_back(bytes);
  }
}

std::vector<std::string> SearchText::hfdlScanBytes() const {
  constexpr std::size_t kNumber = 4;
  if (!isFlight_ || scanBytes_.empty() || length(text_) < kNumber) return scanBytes_;
  std::vector<std::string> all = scanBytes_;
  const auto add = [&](std::string_view behind, std::string_view number) {
    all.push_back(sureBytes(encoding_, std::string(behind) + std::string(number), ignoreCase_));
  };
  // As it stands behind its label: filled with zeros, with fewer of them, or
  // after more blanks.
  std::string_view number = Right(text_, kNumber);
  add("= ", number);
  while (number.size() > 1 && number.starts_with('0')) {
    number.remove_prefix(1);
    add("= ", number);
  }
  add("  ", number);
  return all;
}

bool SearchText::canEndIn(std::string_view utf8) const {
  return std::string_view(text_).ends_with(ignoreCase_ ? toLower(utf8) : std::string(utf8));
}

bool SearchText::isField(std::string_view bytes) const {
  if (!isAscii(bytes)) return isDecodedField(encoding_.decode(bytes));
  return ascii_ && isDecodedField(bytes);
}

bool SearchText::isDecodedField(std::string_view utf8) const {
  utf8 = Trim(utf8);
  if (ignoreCase_ && !isAscii(utf8)) {
    const std::string lower = toLower(utf8);
    return (isRegistration_ ? withoutHyphens(lower) : lower) == text_;
  }
  // Byte by byte: nothing is copied for a line of a log.
  std::size_t at = 0;
  int hyphens = 0;
  for (const char byte : utf8) {
    if (isRegistration_ && byte == '-' && ++hyphens == 1) continue;
    if (at == text_.size() || text_[at] != (ignoreCase_ ? foldedByte(byte) : byte)) return false;
    ++at;
  }
  return at == text_.size();
}

bool SearchText::isIn(std::string_view bytes) const {
  if (!isAscii(bytes)) return isInDecoded(encoding_.decode(bytes));
  return ascii_ && isInDecoded(bytes);
}

bool SearchText::isInDecoded(std::string_view utf8) const {
  if (!ignoreCase_) return utf8.find(text_) != std::string_view::npos;
  return toLower(utf8).find(text_) != std::string::npos;
}

}  // namespace vel
