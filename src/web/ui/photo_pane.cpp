#include "web/ui/photo_pane.h"

#include <QVBoxLayout>

namespace vel {

PhotoPane::PhotoPane(const Folders& folders, int searchIndex,
                     const std::vector<std::string>& engines, QWidget* parent)
    : QWidget(parent), photos_(folders) {
  photo_ = new PhotoView(this);
  photoSize_ = new QLabel(this);
  photoSize_->setObjectName(QStringLiteral("Label1"));
  photoSize_->setAccessibleName(tr("Photo size"));
  photoSize_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  QFont small = photoSize_->font();
  small.setPointSizeF(small.pointSizeF() * 0.85);
  photoSize_->setFont(small);
  photoSize_->setMinimumHeight(QFontMetrics(small).height());
  search_ = new EngineRow(
      {QStringLiteral("Combo2"), tr("Photo search engine"), searchIndex, QStringLiteral("Search"),
       tr("Searches photos of this registration. A small manual change such as B1234/B-1234 or "
          "VNA123/V-NA123 may be needed to find the right images. Please respect the rights of "
          "the images' owners.\n"
          "この機体の写真を検索。B1234/B-1234、VNA123/V-NA123 "
          "のような手直しが必要なことがあります。"
          "画像の権利者の権利を尊重してください。")},
      engines, this);
  auto* rows = new QVBoxLayout(this);
  rows->setContentsMargins(0, 2, 0, 0);
  rows->setSpacing(1);
  rows->addWidget(photo_, 1);
  rows->addWidget(photoSize_);
  rows->addWidget(search_);
}

void PhotoPane::showPhoto(const std::string& registration) {
  const auto file = photos_.find(registration);
  if (file && photo_->load(*file)) {
    const QSize size = photo_->pictureSize();
    photoSize_->setText(QStringLiteral("%1 x %2").arg(size.width()).arg(size.height()));
    return;
  }
  const auto placeholder = photos_.placeholder();
  if (!placeholder || !photo_->load(*placeholder)) photo_->clear();
}

void PhotoPane::clear() {
  photo_->clear();
  photoSize_->clear();
}

}  // namespace vel
