#pragma once

#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QWidget>
#include <functional>
#include <string>

#include "acars/ui/airline_editor.h"
#include "core/context.h"
#include "core/ui/busy_labels.h"
#include "core/ui/line_look_up.h"
#include "log/ui/line_editor.h"
#include "log/ui/log_list_model.h"
#include "log/ui/log_list_view.h"
#include "tables/ui/airport_group.h"
#include "tables/ui/flight_editor.h"
#include "web/ui/engine_row.h"
#include "web/ui/photo_pane.h"

namespace vel {

/// The panel below the ACARS list: what the tables say now about the selected
/// line, ready for editing.
class DetailPanel : public QWidget {
  Q_OBJECT

 public:
  DetailPanel(const Context& context, const Tables& tables, LogListView* list, LogListModel* model,
              QWidget* parent);

  /// Looks everything up for the selected line, step by step; nothing without
  /// one. A look-up that is still under way is given up.
  void showSelection();

  /// Looks the selected line up unless it is shown or about to be: a read may
  /// have hidden the frames of a line that was selected while it ran.
  void showSelectionAgain();

  /// Hides the three table frames and shows the title in their place.
  void hideFrames();

  /// Shows the three table frames in the title's place.
  void showFrames();

  /// Writes the equipment to aircraft.csv.
  void saveEquipment();

  /// Opens the photo of the selected line and marks the line.
  void openSelectedPhoto();

  /// Opens the airport dialog for a shown airport name.

  /// Gives an editor the keys, once the look-up under way, if any, has ended.
  void readyEditor(LineEditor editor, const std::string& key);

  [[nodiscard]] AirportGroup* airports() const { return airports_; }
  [[nodiscard]] EngineRow* photoSearch() const { return photo_->search(); }
  [[nodiscard]] EngineRow* flightSearch() const { return flightSearch_; }
  [[nodiscard]] QPushButton* rawLogButton() const { return rawLog_; }

 private:
  [[nodiscard]] QWidget* makePhotoColumn();
  [[nodiscard]] QWidget* makeFlightColumn();

  const Context& context_;
  LogListView* list_;
  LogListModel* model_;
  BusyLabels* busy_;
  LineLookUp lookUp_;
  TableEditing editing_;
  PhotoPane* photo_;          // Image1, Label1, Combo2, Command7(0)
  QGroupBox* aircraftFrame_;  // Frame1
  EditorBox* equipment_;      // Text1
  QPushButton* enter_;        // Command1
  FlightEditor* flight_;      // Frame2
  QLabel* title_;             // stands in the frames' place
  EngineRow* flightSearch_;   // Combo3, Command7(1)
  QPushButton* rawLog_;       // Command7(3)
  AirportGroup* airports_;
  AirportEditor* airportEditor_;
  AirlineEditor* airline_;    // Frame3
  std::string registration_;  // in the aircraft frame
  std::string flightToShow_;  // of the look-up under way
  LineEditors editors_;       // get the keys when the look-up has ended
};

}  // namespace vel
