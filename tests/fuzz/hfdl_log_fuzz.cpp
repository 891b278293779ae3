// The formatted log: the same events whether it is read line by line or in
// large pieces, and a row of all columns for each record.

#include "hfdl/hfdl_list_reader.h"
#include "hfdl/hfdl_row.h"
#include "tests/fuzz/fuzz_support.h"

namespace vel::fuzz {
namespace {

constexpr HfdlLines kAllLines{HfdlLine::header,    HfdlLine::subRecordEnd, HfdlLine::downLink,
                              HfdlLine::upLink,    HfdlLine::squitter,     HfdlLine::groundStation,
                              HfdlLine::address,   HfdlLine::registration, HfdlLine::flight,
                              HfdlLine::crcFailed, HfdlLine::frequencies};

/// Writes down what a parser tells.
class Minutes : public HfdlListener {
 public:
  std::string text;

 private:
  void messageBegan(const HfdlMessage& message) override { write("began", message); }
  void stationNamed(const HfdlMessage& message) override { write("station", message); }
  void frequenciesAnnounced(const HfdlMessage& message, std::string_view line) override {
    write("frequencies", message);
    text.append(line).append("|");
  }
  void aircraftEnded(const HfdlMessage& message, const HfdlAircraft& aircraft) override {
    write("aircraft", message);
    text += aircraft.address + '|' + aircraft.registration + '|' + aircraft.flightId + '|';
  }
  void messageEnded(const HfdlMessage& message) override { write("ended", message); }

  void write(const char* what, const HfdlMessage& message) {
    check(isUtf8(message.header) && isUtf8(message.groundStation), "bytes that are no text");
    check(length(message.groundStation) <= kLongestStationName, "a station's name too long");
    text += std::string("\n") + what + '|' + message.header + '|' +
            std::to_string(static_cast<int>(message.kind)) + '|' + message.groundStation + '|' +
            (message.checkFailed ? "failed|" : "|");
  }
};

void checkParser(const Encoding& encoding, std::string_view log) {
  // Whole lines only, as the bulk reader gets them.
  const std::size_t end = log.rfind('\n');
  log = log.substr(0, end == std::string_view::npos ? 0 : end + 1);
  Minutes singly;
  Minutes inBulk;
  HfdlParser first(encoding, kAllLines);
  for (std::size_t at = 0; at < log.size();) {
    const std::size_t next = log.find('\n', at) + 1;
    std::string_view line = log.substr(at, next - at - 1);
    if (line.ends_with('\r')) line.remove_suffix(1);
    first.takeLine(line, singly);
    at = next;
  }
  first.end(singly);
  HfdlParser second(encoding, kAllLines);
  second.takeLines(log, inBulk);
  second.end(inBulk);
  check(singly.text == inBulk.text, "pieces are read otherwise than lines");
}

std::vector<std::string> recordsOf(const std::filesystem::path& file, const Encoding& encoding,
                                   std::size_t mostLines) {
  std::vector<std::string> records;
  HfdlReader reader(*InputFile::open(file), encoding);
  while (true) {
    const Result<HfdlReader::Step> step = reader.step(mostLines);
    check(step.ok(), "the log cannot be read");
    if (*step == HfdlReader::Step::end) return records;
    if (*step == HfdlReader::Step::pause) continue;
    const HfdlRecord& record = reader.record();
    check(!record.address.empty(), "a record without an address");
    std::string text;
    for (const std::string* field :
         {&record.timeStamp, &record.tag, &record.direction, &record.groundStation, &record.address,
          &record.registration, &record.flightId}) {
      check(isUtf8(*field), "a field that is no text");
      text += *field + '\n';
    }
    records.push_back(text);
  }
}

void run(const Station& station, Parts parts) {
  const Encoding encoding = encodingOf(lineOfPart(parts.next(), 0));
  put(station.folders().data / "ICAO24.csv", parts.next());
  put(station.folders().data / "FLIGHT.csv", parts.next());
  const std::string_view log = parts.rest();
  checkParser(encoding, log);
  const auto file = station.folders().logs / "202611200000_HFDL_FMT.log";
  put(file, log);
  const std::vector<std::string> records = recordsOf(file, encoding, 1);
  check(records == recordsOf(file, encoding, HfdlReader::kStepLines), "steps change the records");

  const Tables tables(station.folders(), encoding);
  FolderIndex photos(station.folders().pics);
  HfdlListReader reader(*InputFile::open(file), encoding, tables, photos);
  RowStore rows(kHfdlSeparator);
  while (true) {
    const Result<bool> more = reader.step(std::chrono::steady_clock::time_point::max(), rows);
    if (!more) {
      // Only a table's incomplete line can be the reason here.
      check(reader.failedLookUp() && more.error().number == ErrorNumber::incompleteRecord,
            "the log cannot be read");
      return;
    }
    if (!*more) break;
  }
  check(rows.size() == records.size(), "another number of rows than of records");
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const std::vector<std::string_view> fields = split(rows.row(i), kHfdlSeparator);
    check(fields.size() == kHfdlColumns - 1 || fields.size() == kHfdlColumns, "a row lacks fields");
    check(isUtf8(rows.row(i)), "a row that is no text");
  }
}

}  // namespace
}  // namespace vel::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const vel::fuzz::Station station;
  vel::fuzz::run(station, vel::fuzz::Parts(data, size));
  return 0;
}
