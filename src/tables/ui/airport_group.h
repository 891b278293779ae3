#pragma once

#include <QLineEdit>
#include <QListView>
#include <QPushButton>
#include <QStringListModel>
#include <QWidget>
#include <string>

#include "tables/ui/route_end.h"
#include "tables/ui/table_editing.h"

namespace vel {

/// The airport search of both browsers: a keyword box, the candidates below
/// it, and the two "<" buttons that take a candidate's code over.
class AirportGroup : public QWidget {
  Q_OBJECT

 public:
  AirportGroup(const TableEditing& editing, QWidget* parent);

  /// Lists the airports whose names contain the keyword.
  void search();

 Q_SIGNALS:
  /// The code of the selected candidate goes to one end of the route. It is
  /// empty where the table does not have the airport of that name any more.
  void transfer(RouteEnd end, const std::string& code, const std::string& name);

 private:
  void showCodeOfSelected();
  void transferSelected(RouteEnd end);
  /// What the user has chosen; having the keyboard in the list is no choice.
  [[nodiscard]] QModelIndex selected() const;
  [[nodiscard]] std::string codeOf(const QModelIndex& candidate) const;

  const TableEditing& editing_;
  QLineEdit* keyword_;     // Text3
  QListView* candidates_;  // List1
  QStringListModel* names_;
};

/// The airport editor of both browsers: one code with its name.
class AirportEditor : public QWidget {
  Q_OBJECT

 public:
  AirportEditor(const TableEditing& editing, QWidget* parent);

  /// Puts a 4-letter code into its box and gives the keys to the name's; for
  /// any other code to the code's box.
  void takeKeys(const std::string& code);

  /// Writes the record to airport.csv; an empty name deletes the code.
  void saveAirport();

 Q_SIGNALS:
  /// airport.csv has changed.
  void written();

 private:
  void showNameOfCode();

  const TableEditing& editing_;
  EditorBox* code_;     // Text2(5)
  EditorBox* name_;     // Text2(6)
  QPushButton* enter_;  // Command8
};

/// The checks and the edit that the airport editor and the airport dialog
/// share. False when refused, with its message shown.
bool acceptAirport(const TableEditing& editing, const QString& code, const QString& name,
                   TableEdit& edit);

}  // namespace vel
