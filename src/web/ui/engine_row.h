#pragma once

#include <QComboBox>
#include <QPushButton>
#include <QString>
#include <QWidget>
#include <string>
#include <vector>

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

  EngineRow(const Texts& texts, const std::vector<std::string>& engines, QWidget* parent);

  [[nodiscard]] QComboBox* chooser() const { return chooser_; }
  [[nodiscard]] QPushButton* button() const { return button_; }

 private:
  QComboBox* chooser_;
  QPushButton* button_;
};

/// The chooser Combo3 of flight search engines with its button, which has this
/// index among Command7.
EngineRow* makeFlightSearchRow(int buttonIndex, const std::vector<std::string>& engines,
                               QWidget* parent);

/// A button of a window's look-up row, `Command7(index)`.
QPushButton* makeLookUpButton(QWidget* parent, int index, const QString& caption,
                              const QString& toolTip);

/// The raw log button of both browsers, index 3 of the row.
QPushButton* makeRawLogButton(QWidget* parent);

}  // namespace vel
