#pragma once

#include <QDialog>
#include <QPushButton>
#include <functional>
#include <string>
#include <string_view>

#include "tables/ui/table_editing.h"

namespace vel {

class AirportEditor;
class AirportGroup;
class FlightEditor;

/// Edits one airport that a browser has shown by name, and can search the web
/// for its code.
class AirportDialog : public QDialog {
  Q_OBJECT

 public:
  /// The address of the web search for a code.
  using SearchAddress = std::function<std::string(std::string_view code)>;

  /// `callerText` is what the caller's label says.
  AirportDialog(const TableEditing& editing, const QString& callerText, SearchAddress searchAddress,
                QWidget* parent);

  /// Writes the boxes to airport.csv and closes.
  void saveAirport();

  /// Opens the web search for the code.
  void searchWeb();

  /// Closes without writing; not while the airport is written.
  void reject() override;

 protected:
  void showEvent(QShowEvent* event) override;

 private:
  void showNameOfCode();
  void writingGivenUp();

  const TableEditing& editing_;
  QString callerText_;
  SearchAddress searchAddress_;
  EditorBox* code_;  // Text1(0)
  EditorBox* name_;  // Text1(1)
  QPushButton* enter_;
  bool isWriting_ = false;
};

/// Lets what stands beside a flight's editor work with it: a candidate goes into
/// a box of its route, an airport just written shows its name there, and a click
/// on a name opens the airport's dialog.
void joinAirports(FlightEditor& flight, AirportGroup& candidates, AirportEditor& editor,
                  const TableEditing& editing, const AirportDialog::SearchAddress& searchAddress);

}  // namespace vel
