#pragma once

#include <QGridLayout>
#include <QGroupBox>
#include <QPushButton>
#include <array>
#include <functional>
#include <initializer_list>
#include <string>
#include <utility>

#include "tables/ui/table_editing.h"

namespace vel {

/// The aircraft frame of the HFDL browser: the ICAO24.csv record of one
/// address. The frame's caption is the address of the selected line.
class Icao24Editor : public QGroupBox {
  Q_OBJECT

 public:
  /// The boxes Text1, in the order of the table's fields.
  enum Box : std::size_t { kAddress, kThreeLetter, kTwoLetter, kRegistration, kEquipment, kBoxes };

  /// Brings the list up to date after a record was written.
  using RowUpdate = std::function<void(const Icao24Record& written)>;

  Icao24Editor(const TableEditing& editing, RowUpdate rowUpdate, QWidget* parent);

  /// Shows an address as caption and in its box; the other boxes are emptied.
  void setAddress(const std::string& address);

  /// Fills the boxes behind the address.
  void setAircraft(const Icao24Record& record);

  [[nodiscard]] std::string text(Box box) const;

  /// Gives the keys to the box behind the address.
  void takeKeys();

  /// Writes the boxes to ICAO24.csv; no line needs to be selected.
  void saveAircraft();

  /// Fills the boxes from an address look-up's result line on the clipboard.
  void pasteAircraft();

 private:
  void addBox(QGridLayout* grid, Box box, const QString& caption, const QString& accessibleName,
              const QString& toolTip, const QString& widestText);
  /// The user changed a box: the boxes that depend on it follow.
  void boxChanged(Box changed);
  /// Writes boxes without the reactions to a change.
  void write(std::initializer_list<std::pair<Box, std::string>> texts);

  const TableEditing& editing_;
  RowUpdate rowUpdate_;
  std::array<EditorBox*, kBoxes> boxes_{};
  QPushButton* enter_;  // Command1
  QPushButton* paste_;  // Command4
  bool writing_ = false;
};

}  // namespace vel
