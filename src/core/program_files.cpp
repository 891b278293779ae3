#include "core/program_files.h"

#include "core/file.h"

namespace vel {

std::filesystem::path settingsFile(const Folders& folders) {
  return fileIn(folders.program, "vel.env");
}

std::filesystem::path servicesFile(const Folders& folders) {
  return fileIn(folders.program, "services.ini");
}

std::filesystem::path kmlFile(const Folders& folders) {
  return fileIn(folders.program, "temp.kml");
}

std::filesystem::path columnsFile(const Folders& folders) {
  return fileIn(folders.program, "columns.ini");
}

void removeLeftOvers(const Folders& folders) {
  removeLeftOver(settingsFile(folders), kSettingsSuffix);
  removeLeftOver(kmlFile(folders), kKmlSuffix);
  removeLeftOver(columnsFile(folders), kSettingsSuffix);
}

}  // namespace vel
