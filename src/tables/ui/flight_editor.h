#pragma once

#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <array>
#include <functional>
#include <optional>
#include <string>

#include "tables/ui/route_end.h"
#include "tables/ui/table_editing.h"

namespace vel {

class ElidedButton;

/// The flight frame of both browsers: departure, destination and remark of one
/// flight, the names of the two airports, and the editor over FLIGHT.csv. The
/// frame's caption is the flight.
class FlightEditor : public QGroupBox {
  Q_OBJECT

 public:
  /// Whether a line is selected, asked before anything is written.
  using IsLineSelected = std::function<bool()>;
  /// Prepares, before the rewrite, what brings the list up to date after it.
  using RowUpdate = std::function<std::function<void()>()>;

  FlightEditor(const TableEditing& editing, IsLineSelected isLineSelected, RowUpdate rowUpdate,
               QWidget* parent);

  /// The flight whose route is edited: the caption and the key of the table.
  void setFlight(const std::string& flight);
  [[nodiscard]] const std::string& flight() const { return flight_; }

  /// Fills the boxes; without a route they are emptied.
  void setRoute(const std::optional<FlightRoute>& route);
  [[nodiscard]] FlightRoute route() const;

  /// Puts the code of an airport into its box. Where it is empty, because the
  /// table does not have what was looked for, the box stays as it is, and a
  /// notice beside it says so until the box changes.
  void setAirport(RouteEnd end, const std::string& code, const std::string& lookedFor);

  /// Looks the names of both airports up again, after airport.csv has changed.
  void showAirportNames();

  /// Gives the keys to the box that is filled first.
  void takeKeys();

  /// Writes the boxes to FLIGHT.csv.
  void saveRoute();

  /// Offers the routes found in the clipboard's text in a menu.
  void offerCopiedRoutes();

 Q_SIGNALS:
  /// An airport name was clicked, or Enter pressed on it.
  void airportNameChosen(const QString& name);

 private:
  void showAirportName(RouteEnd end);
  [[nodiscard]] EditorBox& boxOf(RouteEnd end) const;
  [[nodiscard]] QLabel& noticeOf(RouteEnd end) const;
  void takeRoute(std::string_view pair);

  const TableEditing& editing_;
  IsLineSelected isLineSelected_;
  RowUpdate rowUpdate_;
  std::string flight_;
  EditorBox* departure_;                  // Text2(0)
  EditorBox* destination_;                // Text2(1)
  EditorBox* remark_;                     // Text2(2)
  std::array<ElidedButton*, 2> names_{};  // Label2(4), Label2(5)
  std::array<QLabel*, 2> notices_{};      // beside the names
  QPushButton* enter_;                    // Command2
  QPushButton* paste_;                    // Command13
};

}  // namespace vel
