#include "tests/ui/monkey/restless_files.h"

#include <QColor>
#include <QImage>
#include <chrono>
#include <fstream>
#include <iterator>
#include <random>
#include <system_error>

namespace vel::test {
namespace {

namespace fs = std::filesystem;

// All of them may fail: a rewrite of the program's own is as good a reason as
// any for a file to be gone.

std::string read(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

void write(const fs::path& path, const std::string& bytes, std::ios::openmode mode) {
  std::ofstream(path, std::ios::binary | mode) << bytes;
}

std::string listLog(int day) {
  std::string log = "Flight No.,Pict,Regist.,Dept.,Dest.,Equipment,Remarks,Time\r\n";
  for (int i = 0; i < 400; ++i) {
    const std::string number = std::to_string(1000 + (i * 7 + day) % 90);
    log += "JL" + number + (i % 3 == 0 ? ",O" : ",X") + ",JA" + number +
           "A,RJTT,KLAX,B77W,<b>&remark,0" + std::to_string(i % 10) + ":00:0" +
           std::to_string(i % 10) + "\r\n";
    if (i % 50 == 0) log += "broken,line\r\n";
  }
  return log;
}

std::string hfdlLog(const std::string& date) {
  std::string log;
  for (int i = 0; i < 200; ++i) {
    const std::string minute = std::to_string(10 + i % 50);
    log += "[1]------------------------[" + date + " 0" + std::to_string(i % 10) + ":" + minute +
           ":00]\r\n";
    if (i % 4 == 0) {
      log +=
          " SQUITTER\r\n  GS NAME         = Agana\r\n"
          "   FREQUENCIES    = [ 5451 8927 13312 ] (Agana)\r\n";
      continue;
    }
    log += i % 4 == 1 ? " UP LINK\r\n" : " DOWN LINK\r\n";
    log += "  GS NAME         = Canarias\r\n   ICAO24 ADDRESS = 86D" + minute + "8\r\n" +
           "   REGISTRATION   = JA10" + minute + "A\r\n   FLIGHT ID      = JL10" + minute +
           "\r\n  ..............................\r\n";
  }
  return log;
}

std::string rawLog(const std::string& registration) {
  std::string log;
  for (int i = 0; i < 60; ++i) {
    log += "2026/11/20 01:00:11 131.450MHz <PRE>+*<SYN><SYN><SOH>2." + registration +
           ".<NAK>H11<STX>M00AJL1001POSN38160W077075,ROKNE,182357,350,EKR" + std::to_string(i) +
           "<CR><VF>second line<ETX><CRC><DEL>\r\n";
  }
  return log;
}

void makeImports(const fs::path& folder) {
  std::string aircraft;
  std::string routes = "Callsign,Code,Number,AirlineCode,AirportCodes\n";
  for (int i = 0; i < 200; ++i) {
    const std::string number = std::to_string(1000 + i);
    aircraft += "86D" + std::to_string(10 + i % 90) + "8;JA" + number + "A;B789;00;;;;\n";
    routes += "JAL" + number + ",JL," + number + ",JAL,RJTT-PHNL-KLAX\n";
  }
  constexpr auto kNew = std::ios::trunc;
  write(folder / "aircraft.csv", aircraft, kNew);
  write(folder / "airports.csv",
        "ident,type,name,municipality,iata_code\nRJTT,large_airport,\"Haneda, "
        "Tokyo\",Tokyo,HND\nKLAX,large_airport,International,Los Angeles,LAX\n",
        kNew);
  write(folder / "letter.csv", "JL,JAL,Japan Airlines\r\nBA,BAW,British Airways\r\n", kNew);
  write(folder / "nothing.txt", "this is no table\nat all\n", kNew);
  write(folder / "routes.csv", routes, kNew);
}

}  // namespace

void makeStation(const Folders& folders) {
  for (const auto& folder : {folders.program, folders.data, folders.logs, folders.eachLogs,
                             folders.pics, folders.base / "imports", folders.base / "saved"}) {
    fs::create_directories(folder);
  }
  makeImports(folders.base / "imports");
  std::string aircraft;
  std::string flights;
  std::string addresses;
  for (int i = 0; i < 90; ++i) {
    const std::string number = std::to_string(1000 + i);
    // What is missing can be imported.
    const bool isKnown = i % 9 != 8;
    if (isKnown) aircraft += "JA" + number + "A,B77W\r\n";
    if (isKnown) flights += "JL" + number + ",RJTTKLAX,-\r\n";
    addresses += "86D" + std::to_string(10 + i) + "8,JAL,JL,JA" + number + "A,B77W\r\n";
  }
  constexpr auto kNew = std::ios::trunc;
  write(folders.data / "aircraft.csv", aircraft, kNew);
  write(folders.data / "FLIGHT.csv", flights, kNew);
  write(folders.data / "ICAO24.csv", addresses, kNew);
  write(folders.data / "airport.csv", "RJTT,Tokyo HND\r\nKLAX,Los Angeles LAX\r\n", kNew);
  write(folders.data / "letter.csv", "JL,JAL,Japan Airlines\r\nNH,ANA,All Nippon\r\n", kNew);
  for (int day = 18; day <= 20; ++day) {
    const std::string two = std::to_string(day);
    write(folders.logs / ("202611" + two + "_list.csv"), listLog(day), kNew);
    write(folders.logs / ("202611" + two + "0000_HFDL_FMT.log"), hfdlLog("2026/11/" + two), kNew);
  }
  for (int i = 0; i < 20; ++i) {
    const std::string name = "JA" + std::to_string(1000 + i) + "A";
    write(folders.eachLogs / (name + ".log"), rawLog(name), kNew);
    QImage photo(320, 200, QImage::Format_RGB32);
    photo.fill(QColor::fromHsv(i * 15, 200, 200));
    photo.save(QString::fromStdString((folders.pics / (name + ".jpg")).string()), "JPG");
  }
  fs::copy_file(folders.pics / "JA1000A.jpg", folders.pics / "noimage.jpg",
                fs::copy_options::overwrite_existing);
}

RestlessFiles::RestlessFiles(const Folders& folders, std::uint64_t seed) {
  for (const auto& folder :
       {folders.data, folders.logs, folders.eachLogs, folders.pics, folders.base / "imports"}) {
    for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
      if (!entry.is_regular_file()) continue;
      files_.push_back({entry.path(), read(entry.path()), folder == folders.data});
    }
  }
  thread_ = std::jthread([this, seed](const std::stop_token& stop) { run(seed, stop); });
}

RestlessFiles::~RestlessFiles() {
  thread_.request_stop();
  thread_.join();
  for (const File& file : files_) restore(file);
}

void RestlessFiles::restore(const File& file) {
  const fs::path beside = file.path.string() + ".restored";
  write(beside, file.bytes, std::ios::trunc);
  std::error_code error;
  fs::rename(beside, file.path, error);
}

void RestlessFiles::run(std::uint64_t seed, const std::stop_token& stop) {
  std::mt19937_64 random(seed);
  const auto below = [&random](std::size_t limit) { return random() % limit; };
  while (!stop.stop_requested()) {
    const File& file = files_[below(files_.size())];
    std::error_code error;
    // Without a table the program ends, as it has to: that is not done often.
    switch (file.isTable && below(10) != 0 ? 5 : below(6)) {
      case 0:
        write(file.path, file.bytes.substr(file.bytes.size() / 2), std::ios::app);
        break;
      case 1:
        fs::resize_file(file.path, below(file.bytes.size() + 1), error);
        break;
      case 2:
        fs::remove(file.path, error);
        break;
      case 3:
        write(file.path, std::string(below(5000), static_cast<char>(below(256))), std::ios::app);
        break;
      default:
        restore(file);
    }
    ++changes_;
    std::this_thread::sleep_for(std::chrono::milliseconds(1 + below(8)));
    restore(file);
  }
}

}  // namespace vel::test
