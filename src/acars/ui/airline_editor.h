#pragma once

#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <functional>
#include <string>

#include "tables/ui/table_editing.h"

namespace vel {

/// The airline frame: what letter.csv says about the airline of a flight.
class AirlineEditor : public QGroupBox {
  Q_OBJECT

 public:
  /// Whether a line is selected, asked before anything is written.
  using IsLineSelected = std::function<bool()>;
  /// Prepares, before the rewrite, what marks the line after it.
  using RowUpdate = std::function<std::function<void()>()>;

  AirlineEditor(const TableEditing& editing, IsLineSelected isLineSelected, RowUpdate rowUpdate,
                QWidget* parent);

  /// Fills the boxes for the first two characters of a flight. False when the
  /// table could not be read and the program ends.
  bool AirLineLoad(const std::string& prefix);

  /// Gives the keys to the box that is filled first.
  void takeKeys();

  /// Writes the boxes to letter.csv.
  void saveAirline();

 private:
  void setFourFields(bool fourFields);

  const TableEditing& editing_;
  IsLineSelected isLineSelected_;
  RowUpdate rowUpdate_;
  std::string prefix_;
  bool fourFields_ = false;
  EditorBox* threeLetter_;  // Text2(3)
  EditorBox* display_;      // Text2(4)
  EditorBox* company_;      // Text2(7)
  QLabel* companyLabel_;
  QPushButton* enter_;  // Command6
};

}  // namespace vel
