#include "samples/raw_log.h"

#include <algorithm>
#include <cstdio>

#include "samples/position_report.h"
#include "samples/random.h"
#include "samples/text_file.h"

namespace vel::samples {
namespace {

using std::chrono::minutes;
using std::chrono::seconds;

constexpr minutes kClimb{18};

/// The raw messages of one aircraft in the making.
class RawMessages {
 public:
  RawMessages(TextFile& file, const Aircraft& aircraft, Moment until, std::uint64_t seed)
      : file_(file),
        aircraft_(aircraft),
        until_(until),
        random_(seed, "raw " + aircraft.registration) {
    // An aircraft writes its position in a few ways only.
    const std::vector<PositionForm>& all = positionForms();
    const std::size_t first = random_.below(all.size());
    forms_ = {all[first], all[(first + 3) % all.size()], all[(first + 7) % all.size()]};
  }

  void addFlight(const Flight& flight) {
    const std::string from = flight.from->icao;
    const std::string to = flight.to->icao;
    const Moment gate = flight.departure - minutes(random_.between(11, 16));
    add(gate - minutes(18), flight, "B9", '/' + from + ".TI2/040" + from + "AA6A1");
    add(gate, flight, "44", eventReport("OUT01", {flight.from->place, 0, gate, &flight}));
    add(flight.departure, flight, "44",
        eventReport("OFF01", {flight.from->place, 0, flight.departure, &flight}));
    // A long flight reports less often than a short one.
    const auto step =
        std::clamp<std::int64_t>((flight.arrival - flight.departure).count() / 16, 4 * 60, 22 * 60);
    Moment time = flight.departure + minutes(random_.between(6, 10));
    while (time < flight.arrival - minutes(26)) {
      addEnRoute(flight, time);
      time += seconds(step * random_.between(70, 130) / 100);
    }
    add(flight.arrival - minutes(24), flight, "B9", '/' + to + ".TI2/040" + to + "A5C3F");
    addPosition(flight, flight.arrival - minutes(15));
    addPosition(flight, flight.arrival - minutes(6));
    add(flight.arrival, flight, "44",
        eventReport("ON01", {flight.to->place, 0, flight.arrival, &flight}));
    const Moment parked = flight.arrival + minutes(random_.between(6, 10));
    add(parked, flight, "44", eventReport("IN01", {flight.to->place, 0, parked, &flight}));
  }

 private:
  void addEnRoute(const Flight& flight, Moment time) {
    switch (random_.below(12)) {
      case 0:
        // A link test has no text at all.
        add(time, flight, "Q0", "");
        break;
      case 1:
        add(time, flight, "5U",
            "01 WXRQ   " + flight.route->flight.substr(2) + '/' + timeStamp(time).substr(8, 2) +
                ' ' + flight.from->icao + '/' + flight.to->icao + " ." + aircraft_.registration +
                "<CR><VF>/TYP 4/STA " + flight.to->icao + "/STA " + flight.from->icao);
        break;
      case 2:
        addEngineReport(flight, time);
        break;
      case 3:
        add(time, flight, "5Z",
            "OS " + flight.to->icao + " /ETA " + utcClock(flight.arrival).substr(0, 4) +
                "<CR><VF>FOB " + std::to_string(random_.between(120, 980)));
        break;
      default:
        addPosition(flight, time);
        break;
    }
    if (random_.chance(0.05)) addOtherForm(flight, time + seconds(40));
  }

  void addPosition(const Flight& flight, Moment time) {
    const PositionForm& form = random_.pick(forms_);
    add(time, flight, form.label,
        form.body({flight.placeAt(time), flightLevel(flight, time), time, &flight}));
  }

  /// One report that needs three blocks.
  void addEngineReport(const Flight& flight, Moment time) {
    const std::string head = "#CFB ENGINE CRUISE REPORT " + flight.route->flight;
    beginMessage();
    addBlock(time, flight, "H1", head + "<CR><VF>N1 88.2 87.9  EGT 612 609", "<ETB>");
    addBlock(time + seconds(2), flight, "H1", "<CR><VF>N2 96.1 95.8  FF 2480 2471", "<ETB>");
    addBlock(time + seconds(4), flight, "H1", "<CR><VF>OIL P 71 69  OIL T 118 120  VIB 0.3 0.2",
             "<ETX>");
  }

  /// A line as the decoder writes it in its message form.
  void addOtherForm(const Flight& flight, Moment time) {
    if (time <= until_) {
      file_.addLine(timeStamp(time) + " [131.450MHz] " + flight.route->flight + " (" +
                    aircraft_.registration + ") Q0 LINK TEST");
    }
  }

  void add(Moment time, const Flight& flight, const std::string& label, const std::string& body) {
    beginMessage();
    addBlock(time, flight, label, body, "<ETX>");
  }

  void beginMessage() {
    number_ = (number_ + 1) % 100;
    blockLetter_ = 'A';
  }

  void addBlock(Moment time, const Flight& flight, const std::string& label,
                const std::string& body, const std::string& end) {
    if (time > until_) return;
    blockId_ = (blockId_ + 1) % 10;
    char messageNumber[16];
    std::snprintf(messageNumber, sizeof messageNumber, "M%02d%c", number_, blockLetter_++);
    file_.addLine(timeStamp(time) + " 131.450MHz <PRE>+*<SYN><SYN><SOH>2" +
                  addressField(aircraft_.registration) + "<NAK>" + label +
                  std::to_string(blockId_) + "<STX>" + messageNumber + flight.route->flight + body +
                  end + "<CRC><DEL>");
  }

  static int flightLevel(const Flight& flight, Moment time) {
    constexpr int kCruise = 370;
    const auto edge = std::min(time - flight.departure, flight.arrival - time);
    const double climbed =
        static_cast<double>(edge.count()) / static_cast<double>(seconds(kClimb).count());
    return std::clamp(static_cast<int>(climbed * kCruise), 10, kCruise);
  }

  TextFile& file_;
  const Aircraft& aircraft_;
  Moment until_;
  Random random_;
  std::vector<PositionForm> forms_;
  int number_ = -1;
  int blockId_ = -1;
  char blockLetter_ = 'A';
};

}  // namespace

Status writeRawLog(const std::filesystem::path& folder, const Aircraft& aircraft,
                   const Schedule& schedule, Moment from, Moment until, std::uint64_t seed) {
  TextFile file(folder / (aircraft.registration + ".log"));
  RawMessages messages(file, aircraft, until, seed);
  for (const Flight& flight : schedule.flights()) {
    if (flight.aircraft == &aircraft && flight.departure >= from) messages.addFlight(flight);
  }
  return file.write();
}

}  // namespace vel::samples
