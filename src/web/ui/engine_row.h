#pragma once

#include <QComboBox>
#include <QPushButton>
#include <QSignalBlocker>
#include <QString>
#include <QWidget>
#include <functional>
#include <vector>

#include "core/ui/plain_text.h"
#include "web/address.h"

namespace vel {

/// A chooser of look-up services with the button that starts the look-up.
class EngineRow : public QWidget {
  Q_OBJECT

 public:
  struct Texts {
    QString chooserName;        ///< object name, "Combo2"
    QString chooserAccessible;  ///< "Photo search engine"
    int buttonIndex;            ///< of Command7
    QString buttonCaption;
    QString buttonToolTip;
  };

  EngineRow(const Texts& texts, QWidget* parent);

  /// Fills the chooser and selects the entry of that number, or the nearest
  /// one; without a signal. All engines of a row are of one type.
  template <typename Engine>
  void setEngines(const std::vector<EngineEntry<Engine>>& entries, int selected = 0) {
    const QSignalBlocker blocker(chooser_);
    chooser_->clear();
    for (const EngineEntry<Engine>& entry : entries) {
      chooser_->addItem(shownText(entry.label, kLongestEntry), static_cast<int>(entry.engine));
    }
    chooser_->setCurrentIndex(qMax(0, qMin(selected, chooser_->count() - 1)));
  }

  /// The engine of the selected entry.
  template <typename Engine>
  [[nodiscard]] Engine engine() const {
    return static_cast<Engine>(chooser_->currentData().toInt());
  }

  /// Offers the settings of the search engines by a right click on the chooser,
  /// or its menu key.
  void offerSettings(std::function<void()> open);

  [[nodiscard]] QComboBox* chooser() const { return chooser_; }
  [[nodiscard]] QPushButton* button() const { return button_; }

 private:
  QComboBox* chooser_;
  QPushButton* button_;
};

/// The chooser Combo3 of flight search engines with its button, which has this
/// index among Command7.
EngineRow* makeFlightSearchRow(int buttonIndex,
                               const std::vector<EngineEntry<FlightEngine>>& engines,
                               QWidget* parent);

/// A button of a window's look-up row, `Command7(index)`.
QPushButton* makeLookUpButton(QWidget* parent, int index, const QString& caption,
                              const QString& toolTip);

/// The raw log button of both browsers, index 3 of the row.
QPushButton* makeRawLogButton(QWidget* parent);

}  // namespace vel
