#include "hfdl/frequency_tables.h"

#include <algorithm>
#include <cstdio>
#include <functional>
#include <utility>

#include "core/text.h"

namespace vel {
namespace {

using std::chrono::local_seconds;

constexpr std::string_view kStampForm = "0000/00/00 00:00:00";
constexpr std::uint64_t kOtherStamp = std::uint64_t{1} << 63;
constexpr std::size_t kMarkWidth = 10;

constexpr HfdlLines kAnnouncements{HfdlLine::header, HfdlLine::frequencies};

// These bounds keep a log of ever new lines from being remembered whole.
constexpr std::size_t kMostKnownLines = 4096;
constexpr std::size_t kKnownPlaces = 2 * kMostKnownLines;
constexpr std::size_t kLongestKnownText = 255;

// How a frequency line begins, nearly always.
constexpr std::string_view kUsualBegin = "   FREQUENCIES    = [";

// The digits of a time stamp of the usual form.
std::optional<std::uint64_t> digitsOf(std::string_view timeStamp) {
  if (timeStamp.size() != kStampForm.size()) return std::nullopt;
  std::uint64_t digits = 0;
  for (std::size_t i = 0; i < kStampForm.size(); ++i) {
    const char c = timeStamp[i];
    if (kStampForm[i] != '0') {
      if (c != kStampForm[i]) return std::nullopt;
    } else {
      if (c < '0' || c > '9') return std::nullopt;
      digits = digits * 10 + static_cast<std::uint64_t>(c - '0');
    }
  }
  return digits;
}

std::string stampOfDigits(std::uint64_t digits) {
  std::string stamp(kStampForm);
  for (std::size_t i = stamp.size(); i-- > 0;) {
    if (stamp[i] != '0') continue;
    stamp[i] = static_cast<char>('0' + digits % 10);
    digits /= 10;
  }
  return stamp;
}

// What stands between the first opening character and the closing one after
// it, or nothing where either is missing.
std::optional<std::string_view> between(std::string_view line, char open, char close) {
  const std::size_t begin = line.find(open);
  if (begin == std::string_view::npos) return std::nullopt;
  const std::size_t end = line.find(close, begin);
  if (end == std::string_view::npos) return std::nullopt;
  return line.substr(begin + 1, end - begin - 1);
}

}  // namespace

FrequencyTables::FrequencyTables(const Encoding& encoding)
    : encoding_(encoding), parser_(encoding, kAnnouncements) {
  clear();
}

void FrequencyTables::clear() {
  parser_ = HfdlParser(encoding_, kAnnouncements);
  stations_.clear();
  knownLines_.clear();
  knownTexts_.clear();
  knownPlaces_.assign(kKnownPlaces, 0);
  stamp_.reset();
  overflowed_ = false;
  excessStations_ = {};
  excessFrequencies_ = {};
}

void FrequencyTables::readLines(std::string_view lines) { parser_.takeLines(lines, *this); }

void FrequencyTables::messageBegan(const HfdlMessage&) { stamp_.reset(); }

void FrequencyTables::frequenciesAnnounced(const HfdlMessage& message, std::string_view line) {
  if (!stamp_) stamp_ = stampOf(message.header.empty() ? "" : chartTimeStamp(message.header));
  const bool isUsual = line.starts_with(kUsualBegin);
  const std::string_view text = line.substr(isUsual ? kUsualBegin.size() : 0);
  std::uint16_t& place = knownPlace(text, isUsual);
  if (place == 0) {
    KnownLine entered = enterFrequencies(line, *stamp_);
    if (text.size() > kLongestKnownText || knownLines_.size() == kMostKnownLines) return;
    entered.textAt = static_cast<std::uint32_t>(knownTexts_.size());
    entered.textSize = static_cast<std::uint8_t>(text.size());
    entered.isUsual = isUsual;
    knownTexts_ += text;
    knownLines_.push_back(entered);
    place = static_cast<std::uint16_t>(knownLines_.size());
    return;
  }
  const KnownLine& known = knownLines_[place - 1U];
  if (known.station == KnownLine::kNoStation) return;
  Station& station = stations_[known.station];
  station.points[enterStamp(station, *stamp_)].marks |= known.marks;
}

// Where the line of that text stands among the known ones, or the free place
// for it.
std::uint16_t& FrequencyTables::knownPlace(std::string_view text, bool isUsual) {
  const auto isAt = [&](const KnownLine& line) {
    return line.textSize == text.size() && line.isUsual == isUsual &&
           std::string_view(knownTexts_).substr(line.textAt, line.textSize) == text;
  };
  std::size_t place = std::hash<std::string_view>{}(text) % kKnownPlaces;
  while (knownPlaces_[place] != 0 && !isAt(knownLines_[knownPlaces_[place] - 1U])) {
    place = (place + 1) % kKnownPlaces;
  }
  return knownPlaces_[place];
}

// The line is not remembered yet.
FrequencyTables::KnownLine FrequencyTables::enterFrequencies(std::string_view line,
                                                             const Stamp& stamp) {
  KnownLine entered;
  const std::optional<std::string_view> list = between(line, '[', ']');
  const std::optional<std::string_view> name = between(line, '(', ')');
  if (!list || !name || Trim(*name).empty()) return entered;
  const std::optional<std::size_t> station = enterStation(Left(*name, kLongestStationName));
  if (!station) return entered;
  entered.station = static_cast<std::uint8_t>(*station);
  const std::size_t point = enterStamp(stations_[*station], stamp);
  for (const std::string_view frequency : split(Trim(*list), ' ')) {
    if (frequency.empty()) continue;
    addFrq2Ary(*station, frequency, point);
    const std::optional<std::size_t> slot = enterFrequency(*station, frequency);
    if (slot) entered.marks |= std::uint32_t{1} << *slot;
  }
  return entered;
}

std::optional<std::size_t> FrequencyTables::enterStation(std::string_view name) {
  for (std::size_t i = 0; i < stations_.size(); ++i) {
    if (stations_[i].name == name) return i;
  }
  if (stations_.size() == kMostStations) {
    excessStations_.add(name);
    return std::nullopt;
  }
  stations_.emplace_back().name = name;
  return stations_.size() - 1;
}

FrequencyTables::Stamp FrequencyTables::stampOf(std::string timeStamp) {
  const StampKey key =
      digitsOf(timeStamp).value_or(kOtherStamp | std::hash<std::string>{}(timeStamp));
  const local_seconds moment = momentOf(timeStamp).value_or(kNoMoment);
  return {std::move(timeStamp), key, moment};
}

std::size_t FrequencyTables::enterTimePoint(std::size_t station, std::string_view timeStamp) {
  return enterStamp(stations_[station], stampOf(std::string(timeStamp)));
}

std::size_t FrequencyTables::enterStamp(Station& station, const Stamp& stamp) {
  auto& order = station.order;
  const auto earlier = [](const auto& entry, StampKey key) { return entry.first < key; };
  auto place = order.end();
  if (!order.empty() && order.back().first >= stamp.key) {
    place = std::lower_bound(order.begin(), order.end(), stamp.key, earlier);
    if (place->first == stamp.key) return place->second;
  }

  const std::size_t index = std::min(station.timePointCount, kLastTimePoint);
  if (index == station.points.size()) {
    station.points.push_back({stamp.moment, 0});
    station.keys.push_back(stamp.key);
  } else {
    const StampKey overwritten = station.keys[index];
    order.erase(std::lower_bound(order.begin(), order.end(), overwritten, earlier));
    station.otherStamps.erase(overwritten);
    place = std::lower_bound(order.begin(), order.end(), stamp.key, earlier);
    station.points[index].moment = stamp.moment;
    station.keys[index] = stamp.key;
  }
  order.insert(place, {stamp.key, static_cast<std::uint16_t>(index)});
  if ((stamp.key & kOtherStamp) != 0) station.otherStamps.emplace(stamp.key, stamp.text);
  ++station.timePointCount;
  if (station.timePointCount >= kOverflow) overflowed_ = true;
  return index;
}

std::optional<std::size_t> FrequencyTables::enterFrequency(std::size_t station,
                                                           std::string_view frequency) {
  auto& frequencies = stations_[station].frequencies;
  const auto found = std::find(frequencies.begin(), frequencies.end(), frequency);
  if (found != frequencies.end()) return static_cast<std::size_t>(found - frequencies.begin());
  if (frequencies.size() == kMostFrequencies) {
    excessFrequencies_.add(stations_[station].name + '\n' + std::string(frequency));
    return std::nullopt;
  }
  frequencies.emplace_back(frequency);
  return frequencies.size() - 1;
}

void FrequencyTables::addFrq2Ary(std::size_t station, std::string_view frequency,
                                 std::size_t timePoint) {
  const std::optional<std::size_t> slot = enterFrequency(station, frequency);
  if (!slot) return;
  stations_[station].points[std::min(timePoint, kLastTimePoint)].marks |= std::uint32_t{1} << *slot;
}

std::size_t FrequencyTables::largestTimePointCount() const {
  std::size_t largest = 0;
  for (const Station& station : stations_) largest = std::max(largest, station.timePointCount);
  return largest;
}

std::string FrequencyTables::timePoint(std::size_t station, std::size_t index) const {
  const StampKey key = stations_[station].keys[index];
  if ((key & kOtherStamp) == 0) return stampOfDigits(key);
  return stations_[station].otherStamps.at(key);
}

std::string FrequencyTables::marks(std::size_t station, std::size_t index) const {
  std::string text(kMarkWidth, ' ');
  const std::uint32_t marked = stations_[station].points[index].marks;
  for (std::size_t slot = 0; slot < kMostFrequencies; ++slot) {
    if ((marked >> slot & 1U) == 0) continue;
    if (text.size() <= slot) text.resize(slot + 1, ' ');
    text[slot] = '1';
  }
  return text;
}

}  // namespace vel
