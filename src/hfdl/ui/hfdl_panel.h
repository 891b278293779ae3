#pragma once

#include <QLabel>
#include <QPersistentModelIndex>
#include <QPushButton>
#include <QWidget>
#include <string>

#include "core/context.h"
#include "core/ui/busy_labels.h"
#include "core/ui/line_look_up.h"
#include "hfdl/ui/icao24_editor.h"
#include "log/ui/line_editor.h"
#include "log/ui/log_list_model.h"
#include "log/ui/log_list_view.h"
#include "tables/ui/airport_group.h"
#include "tables/ui/flight_editor.h"
#include "web/ui/engine_row.h"
#include "web/ui/photo_pane.h"

namespace vel {

/// The panel below the HFDL list: what the tables say now about the aircraft
/// and the flight of the selected line, ready for editing.
class HfdlPanel : public QWidget {
  Q_OBJECT

 public:
  HfdlPanel(const Context& context, const Tables& tables, LogListView* list, LogListModel* model,
            QWidget* parent);

  /// Looks everything up for the selected line, step by step; nothing without
  /// one. A look-up that is still under way is given up.
  void showSelection();

  /// Looks the selected line up unless it is shown or about to be.
  void showSelectionAgain();

  /// A read begins: hides both frames, the photo and its size, shows
  /// "Loading".
  void readBegins();
  /// A read has ended: hides "Loading".
  void readEnds();

  /// Opens the photo of the selected line.
  void openSelectedPhoto();

  [[nodiscard]] Icao24Editor* aircraft() const { return aircraft_; }
  [[nodiscard]] FlightEditor* flight() const { return flight_; }
  /// Gives an editor the keys, once the look-up under way, if any, has ended.
  void readyEditor(LineEditor editor, const std::string& key);

  [[nodiscard]] AirportGroup* airports() const { return airports_; }
  [[nodiscard]] EngineRow* addressSearch() const { return addressSearch_; }
  [[nodiscard]] EngineRow* photoSearch() const { return photo_->search(); }
  [[nodiscard]] EngineRow* flightSearch() const { return flightSearch_; }
  [[nodiscard]] QPushButton* rawLogButton() const { return rawLog_; }

 private:
  [[nodiscard]] QWidget* makeAircraftColumn();
  [[nodiscard]] QWidget* makeFlightColumn();
  [[nodiscard]] QWidget* makeAirportColumn();
  void updateAircraftRows(const Icao24Record& written);
  [[nodiscard]] std::function<void()> flightRowsUpdate();

  const Context& context_;
  LogListView* list_;
  LogListModel* model_;
  BusyLabels* busy_;
  LineLookUp lookUp_;
  TableEditing editing_;
  PhotoPane* photo_;          // Image1, Label1, Combo2, Command7(1)
  Icao24Editor* aircraft_;    // Frame1
  EngineRow* addressSearch_;  // Combo4, Command7(0)
  FlightEditor* flight_;      // Frame2
  QLabel* hint_;              // stands in the flight frame's place
  EngineRow* flightSearch_;   // Combo3, Command7(2)
  QPushButton* rawLog_;       // Command7(3)
  AirportGroup* airports_;
  AirportEditor* airportEditor_;
  QPersistentModelIndex shownLine_;
  std::string receivedFlight_;  // of the look-up under way
  Icao24Record foundAircraft_;
  LineEditors editors_;  // get the keys when the look-up has ended
};

}  // namespace vel
