#include "samples/sample_data.h"

#include <QFile>
#include <charconv>
#include <functional>
#include <optional>
#include <sstream>

#include "samples/failure.h"

namespace vel::samples {
namespace {

std::vector<std::string> splitAtBlanks(const std::string& text) {
  std::istringstream stream(text);
  std::vector<std::string> words;
  for (std::string word; stream >> word;) words.push_back(word);
  return words;
}

/// The words from `first` on, joined again by single blanks.
std::string joinFrom(const std::vector<std::string>& words, std::size_t first) {
  std::string joined;
  for (std::size_t i = first; i < words.size(); ++i) joined += (i == first ? "" : " ") + words[i];
  return joined;
}

std::optional<double> toNumber(const std::string& text) {
  double value = 0;
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, value);
  if (error != std::errc() || stop != end) return std::nullopt;
  return value;
}

/// Takes a leading "!" off and says whether there was none.
bool takeListedMark(std::string& word) {
  if (!word.starts_with('!')) return true;
  word.erase(0, 1);
  return false;
}

/// Hands the words of every line that is neither blank nor a comment to
/// `take`, which says whether the line is as it should be.
Status readWords(const std::string& name,
                 const std::function<bool(std::vector<std::string>&)>& take) {
  QFile file(QString::fromStdString(":/samples/data/" + name));
  if (!file.open(QIODevice::ReadOnly)) {
    return failure(name + ": not in the program: " + file.errorString().toStdString());
  }
  std::istringstream stream(file.readAll().toStdString());
  int number = 0;
  for (std::string line; std::getline(stream, line);) {
    ++number;
    std::vector<std::string> words = splitAtBlanks(line);
    if (words.empty() || words[0].starts_with('#')) continue;
    if (!take(words)) {
      return failure(name + " line " + std::to_string(number) + ": not understood: " + line);
    }
  }
  return {};
}

}  // namespace

Status SampleData::load() {
  for (const auto part :
       {&SampleData::loadAirports, &SampleData::loadAirlines, &SampleData::loadAircraft,
        &SampleData::loadRoutes, &SampleData::loadGroundStations}) {
    if (Status status = (this->*part)(); !status) return status;
  }
  return {};
}

Status SampleData::loadAirports() {
  Status status = readWords("airports.txt", [this](std::vector<std::string>& words) {
    if (words.size() < 5 || words[0].size() != 4 || words[1].size() != 3) return false;
    const auto latitude = toNumber(words[2]);
    const auto longitude = toNumber(words[3]);
    if (!latitude || !longitude) return false;
    airports_.push_back({words[0], words[1], joinFrom(words, 4), {*latitude, *longitude}});
    return true;
  });
  for (const Airport& airport : airports_) airportOf_[airport.icao] = &airport;
  return status;
}

Status SampleData::loadAirlines() {
  Status status = readWords("airlines.txt", [this](std::vector<std::string>& words) {
    const bool listed = takeListedMark(words[0]);
    if (words.size() < 6 || words[0].size() != 2 || words[1].size() != 3) return false;
    for (std::size_t i = 2; i < 5; ++i) {
      if (words[i] == "-") {
        words[i].clear();
      } else if (words[i].size() != 7 || !words[i].starts_with('#')) {
        return false;
      }
    }
    airlines_.push_back(
        {words[0], words[1], joinFrom(words, 5), words[2], words[3], words[4], listed});
    return true;
  });
  for (const Airline& airline : airlines_) airlineOf_[airline.code2] = &airline;
  return status;
}

Status SampleData::loadAircraft() {
  Status status = readWords("aircraft.txt", [this](std::vector<std::string>& words) {
    if (words.size() != 4 || !airlineOf_.contains(words[2])) return false;
    const bool listed = takeListedMark(words[0]);
    const bool addressListed = takeListedMark(words[3]);
    if (words[3] == "-") {
      words[3].clear();
    } else if (words[3].size() != 6) {
      return false;
    }
    aircraft_.push_back({words[0], words[1], words[2], words[3], listed, addressListed});
    return true;
  });
  for (const Aircraft& aircraft : aircraft_) {
    fleets_[{aircraft.airline, aircraft.type}].push_back(&aircraft);
  }
  return status;
}

Status SampleData::loadRoutes() {
  return readWords("routes.txt", [this](std::vector<std::string>& words) {
    const bool listed = takeListedMark(words[0]);
    if (words.size() < 4 || words[0].size() != 6 || !airportOf_.contains(words[1]) ||
        !airportOf_.contains(words[2]) || !airlineOf_.contains(words[0].substr(0, 2))) {
      return false;
    }
    Route route{words[0], words[1], words[2], {}, words.size() > 4 ? joinFrom(words, 4) : "-",
                listed};
    std::istringstream types(words[3]);
    for (std::string type; std::getline(types, type, '|');) route.types.push_back(type);
    routes_.push_back(std::move(route));
    return !fleetFor(routes_.back()).empty();
  });
}

Status SampleData::loadGroundStations() {
  return readWords("hfdl_stations.txt", [this](std::vector<std::string>& words) {
    if (words.size() < 6) return false;
    const auto latitude = toNumber(words[0]);
    const auto longitude = toNumber(words[1]);
    const auto weight = toNumber(words[2]);
    if (!latitude || !longitude || !weight) return false;
    GroundStation station;
    station.place = {*latitude, *longitude};
    station.weight = *weight;
    std::size_t i = 3;
    while (i < words.size() && words[i] != "|") station.frequencies.push_back(words[i++]);
    station.name = joinFrom(words, i + 1);
    groundStations_.push_back(std::move(station));
    return !groundStations_.back().frequencies.empty() && !groundStations_.back().name.empty();
  });
}

std::vector<const Aircraft*> SampleData::fleetFor(const Route& route) const {
  std::vector<const Aircraft*> fleet;
  for (const std::string& type : route.types) {
    if (const auto found = fleets_.find({route.airline(), type}); found != fleets_.end()) {
      fleet.insert(fleet.end(), found->second.begin(), found->second.end());
    }
  }
  return fleet;
}

}  // namespace vel::samples
