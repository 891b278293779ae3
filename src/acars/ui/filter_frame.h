#pragma once

#include <QCheckBox>
#include <QComboBox>
#include <QFrame>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <array>

#include "acars/list_log.h"

namespace vel {

/// The "Filter" frame of the ACARS browser.
class FilterFrame : public QFrame {
  Q_OBJECT

 public:
  /// Indexes of the filter boxes Text4; index 3 has no box.
  enum Box : int { kFlight, kRegistration, kAirport, kUnused, kEquipment, kRemarks, kTime, kBoxes };

  explicit FilterFrame(QWidget* parent);

  /// What the controls ask for.
  [[nodiscard]] ListFilter filter() const;

  /// Selects the entries that are chosen at load and by Clear.
  void selectFirstEntries();

  /// Puts every control back as it is at load.
  void clearAll();

  void setCount(std::size_t shownLines);

  /// True when the frame can ask for the lines that have this text in the
  /// column: there is no filter for line numbers, nor for the mark of a photo
  /// that was opened.
  [[nodiscard]] static bool canFilterBy(ListColumn column, const QString& text);

  /// Sets the filter of a column to a cell's text; nothing where canFilterBy
  /// is false.
  void filterBy(ListColumn column, const QString& text);

  [[nodiscard]] QLineEdit* box(Box index) const { return boxes_[static_cast<std::size_t>(index)]; }

 Q_SIGNALS:
  /// A control asks for other lines.
  void changed();
  /// The button that clears every filter was pressed.
  void clearPressed();

 private:
  void choose(PhotoFilter photo);
  void choose(TimeComparison comparison);
  QLineEdit* makeBox(Box index, const QString& accessibleName, const QString& toolTip, int width);

  std::array<QLineEdit*, kBoxes> boxes_{};
  QComboBox* photo_;
  QComboBox* timeComparison_;
  QCheckBox* letter_;
  QPushButton* clear_;
  QLabel* count_;
};

}  // namespace vel
