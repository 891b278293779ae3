#pragma once

#include <QLabel>
#include <QWidget>
#include <filesystem>
#include <string>
#include <vector>

#include "core/context.h"
#include "core/job.h"
#include "web/jpeg.h"
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
  PhotoPane(const Context& context, int searchIndex,
            const std::vector<EngineEntry<PhotoEngine>>& engines, QWidget* parent);

  /// Shows the photo of a registration with its size as soon as it is decoded.
  /// Without one the placeholder is shown, and the size stays as it was; of a
  /// photo that is too large the size alone is shown.
  void showPhoto(const std::string& registration);

  /// Shows neither photo nor size.
  void clear();

  [[nodiscard]] PhotoView* photo() const { return photo_; }
  [[nodiscard]] EngineRow* search() const { return search_; }

 private:
  void decode(const std::filesystem::path& file, const JobSlot::Watch& watch);
  void takePhoto(const Status& decoded);
  void showPlaceholder();
  void showNothing();
  void showDecoded();
  [[nodiscard]] QSize trueSize() const;

  PhotoFolder photos_;
  JobSlot decoding_;
  JpegPicture picture_;  // of the job
  QString missing_;      // what to do where there is no photo
  PhotoView* photo_;     // Image1
  QLabel* photoSize_;    // Label1
  EngineRow* search_;    // Combo2
};

}  // namespace vel
