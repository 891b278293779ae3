#pragma once

#include <QDialog>
#include <QLineEdit>
#include <QPushButton>
#include <string>

#include "tables/ui/table_editing.h"

namespace vel {

/// Edits one airport that a browser has shown by name, and can search the web
/// for its code.
class AirportDialog : public QDialog {
  Q_OBJECT

 public:
  /// `callerText` is what the caller's label says; `searchHost` is the web
  /// search engine's scheme and host.
  AirportDialog(const TableEditing& editing, const QString& callerText,
                const std::string& searchHost, QWidget* parent);

  void OKButton_Click();
  void Command6_Click();

 protected:
  void showEvent(QShowEvent* event) override;

 private:
  void codeChanged();

  const TableEditing& editing_;
  QString callerText_;
  std::string searchHost_;
  QLineEdit* code_;  // Text1(0)
  QLineEdit* name_;  // Text1(1)
  QPushButton* enter_;
};

}  // namespace vel
