// Stands for the maker of sample stations.
//
//   stand_in_maker FOLDER    makes a station with a table there; with
//                            VEL_STAND_IN=fails says why not and ends

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>

int main(int argc, char** argv) {
  const char* value = std::getenv("VEL_STAND_IN");
  if (argc != 2 || (value != nullptr && std::string(value) == "fails")) {
    std::cerr << "<b>disk</b> is full" << std::endl;
    return 1;
  }
  const std::filesystem::path base = argv[1];
  std::filesystem::create_directories(base / "data");
  std::filesystem::create_directories(base / "logs");
  std::ofstream table(base / "data" / "letter.csv", std::ios::binary);
  table << "NH\n";
  return table.flush() ? 0 : 1;
}
