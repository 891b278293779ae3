#pragma once

#include <QLabel>
#include <QWidget>
#include <string>

#include "core/folders.h"
#include "web/photo.h"
#include "web/ui/engine_row.h"
#include "web/ui/photo_view.h"

namespace vel {

/// The photo area of both browsers: the photo, its size, and the photo search
/// below them.
class PhotoPane : public QWidget {
  Q_OBJECT

 public:
  /// `searchIndex` is that of the search button among Command7.
  PhotoPane(const Folders& folders, int searchIndex, const std::vector<std::string>& engines,
            QWidget* parent);

  /// Shows the photo of a registration with its size. Without one the
  /// placeholder is shown, and the size stays as it was.
  void showPhoto(const std::string& registration);

  /// Shows neither photo nor size.
  void clear();

  [[nodiscard]] PhotoView* photo() const { return photo_; }
  [[nodiscard]] EngineRow* search() const { return search_; }

 private:
  PhotoFolder photos_;
  PhotoView* photo_;   // Image1
  QLabel* photoSize_;  // Label1
  EngineRow* search_;  // Combo2
};

}  // namespace vel
