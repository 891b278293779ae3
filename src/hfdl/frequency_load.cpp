#include "hfdl/frequency_load.h"

#include <utility>

#include "core/file.h"
#include "core/text.h"
#include "hfdl/hfdl_log.h"

namespace vel {
namespace {

using std::chrono::days;
using std::chrono::local_days;

constexpr std::size_t kPieceBytes = std::size_t{1} << 20;

// Letter case aside, as the names are found.
std::string boundOf(std::string_view name) { return toLower(name); }

std::string boundOf(local_days day) {
  return boundOf(dayDigits(day) + "0000" + std::string(kHfdlLogSuffix));
}

}  // namespace

local_days chartStart(std::chrono::local_seconds now) {
  return std::chrono::floor<days>(now) - days(6);
}

FrequencyLoad::FrequencyLoad(const Folders& folders, FrequencyTables& tables, local_days start)
    : logs_(folders.logs),
      tables_(tables),
      lowerBound_(boundOf(start - days(2))),
      upperBound_(boundOf(start + days(7))),
      names_(hfdlLogs(folders)) {
  tables_.clear();
}

Result<JobProgress> FrequencyLoad::step(Clock::time_point deadline) {
  if (!file_) return nextFile() ? JobProgress::more : JobProgress::done;
  while (readPiece()) {
    if (Clock::now() >= deadline) break;
  }
  return JobProgress::more;
}

bool FrequencyLoad::nextFile() {
  file_.reset();
  while (next_ < names_.size()) {
    const std::string& name = names_[next_++];
    const std::string dated = boundOf(name);
    const bool wanted = lowerBound_ < dated && dated < upperBound_;
    progressText_ += wanted ? 'o' : '.';
    if (!wanted) continue;
    Result<InputFile> file = InputFile::open(logs_ / toPath(name));
    if (file) {
      file_.emplace(*std::move(file), LineBlocks::LongerLines::passOver);
    } else if (!firstError_) {
      firstError_ = file.error();
    }
    return true;
  }
  return false;
}

bool FrequencyLoad::readPiece() {
  if (!file_) return false;
  for (std::size_t bytes = 0; bytes < kPieceBytes;) {
    const Result<std::string_view> lines = file_->next();
    if (!lines && !firstError_) firstError_ = lines.error();
    if (!lines || lines->empty()) {
      file_.reset();
      return false;
    }
    tables_.readLines(*lines);
    bytes += lines->size();
  }
  return true;
}

std::string FrequencyLoad::overflowText() const {
  if (!tables_.overflowed()) return {};
  return "データ量が多く一部のデータを処理できませんでした。（" +
         std::to_string(tables_.largestTimePointCount()) + "件）サポートまでお問い合わせください。";
}

std::vector<std::string> FrequencyLoad::messages() const {
  std::vector<std::string> messages;
  if (firstError_) messages.push_back(firstError_->text());
  std::string excess = excessMessage(tables_.excessStations(), tables_.excessFrequencies());
  if (!excess.empty()) messages.push_back(std::move(excess));
  return messages;
}

Drawing progressDrawing(const std::string& progressText, double width, double height) {
  constexpr Colour kNavy{0, 0, 128};
  return {width, height, ChartFont::gothic, {Text{50, 50, progressText, kNavy, 9, Align::left}}};
}

}  // namespace vel
