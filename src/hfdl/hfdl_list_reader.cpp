#include "hfdl/hfdl_list_reader.h"

#include <string>
#include <utility>

#include "hfdl/hfdl_row.h"

namespace vel {

HfdlListReader::HfdlListReader(InputFile file, const Encoding& encoding, const Tables& tables,
                               FolderIndex& photos)
    : reader_(std::move(file), encoding), tables_(tables), photos_(photos) {}

Result<bool> HfdlListReader::step(std::chrono::steady_clock::time_point deadline, RowStore& rows) {
  photos_.refresh();
  const Tables::ManyLookUps lookUps(tables_);
  do {
    const Result<HfdlReader::Step> read = reader_.step();
    if (!read) return read.error();
    if (*read == HfdlReader::Step::end) return false;
    if (*read == HfdlReader::Step::pause) continue;
    const Result<std::string> line = SetLVline(reader_.record(), tables_, photos_);
    if (!line) {
      failedLookUp_ = true;
      return line.error();
    }
    rows.append(*line);
  } while (std::chrono::steady_clock::now() < deadline);
  return true;
}

}  // namespace vel
