#pragma once

#include <QCheckBox>
#include <QDialog>

#include "core/context.h"
#include "core/ui/editor_box.h"
#include "web/address.h"
#include "web/ui/own_site.h"

namespace vel {

/// The "Conffig" dialog: the user's own two search engines and two options.
class ConffigDialog : public QDialog {
  Q_OBJECT

 public:
  ConffigDialog(const Context& context, OwnSite& site, QWidget* parent);

 private:
  void store();
  void testRegistration();
  void testFlight();
  void openSample(const SearchSample& sample);

  const Context& context_;
  OwnSite& site_;
  EditorBox* registrationName_;
  EditorBox* registrationAddress_;
  EditorBox* flightName_;
  EditorBox* flightAddress_;
  QCheckBox* zeroSuppress_;
  QCheckBox* keepCursor_;
};

}  // namespace vel
