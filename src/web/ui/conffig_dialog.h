#pragma once

#include <QCheckBox>
#include <QDialog>
#include <QLineEdit>

#include "core/context.h"
#include "web/ui/web_access.h"

namespace vel {

/// The "Conffig" dialog: the user's own two search engines and two options.
class ConffigDialog : public QDialog {
  Q_OBJECT

 public:
  ConffigDialog(const Context& context, WebAccess& web, QWidget* parent);

  void OKButton_Click();
  /// Opens the sample of the registration (0) or of the flight (1) search.
  void Command1_Click(int index);

 private:
  const Context& context_;
  WebAccess& web_;
  QLineEdit* registrationName_;
  QLineEdit* registrationAddress_;
  QLineEdit* flightName_;
  QLineEdit* flightAddress_;
  QCheckBox* zeroSuppress_;
  QCheckBox* keepCursor_;
};

}  // namespace vel
