#include "web/ui/photo_pane.h"

#include <QTransform>
#include <QVBoxLayout>
#include <chrono>
#include <memory>
#include <utility>

#include "core/ui/plain_text.h"

namespace vel {
namespace {

// More than the longer side of the frame, on a screen of double scale too.
constexpr int kEnough = 800;

// So long a window may stand still without being noticed.
constexpr std::chrono::milliseconds kAtOnce{15};

// As the camera was held.
QImage upright(const JpegPicture& picture) {
  const QImage stored = QImage(picture.pixels.data(), picture.columns, picture.rows,
                               qsizetype{3} * picture.columns, QImage::Format_RGB888)
                            .convertToFormat(QImage::Format_RGB32);
  switch (picture.turn) {
    case 2:
      return stored.mirrored(true, false);
    case 3:
      return stored.mirrored(true, true);
    case 4:
      return stored.mirrored(false, true);
    case 5:
      return stored.transformed(QTransform().rotate(90)).mirrored(true, false);
    case 6:
      return stored.transformed(QTransform().rotate(90));
    case 7:
      return stored.transformed(QTransform().rotate(-90)).mirrored(true, false);
    case 8:
      return stored.transformed(QTransform().rotate(-90));
    default:
      return stored;
  }
}

bool liesOnItsSide(int turn) { return turn >= 5; }

}  // namespace

PhotoPane::PhotoPane(const Context& context, int searchIndex,
                     const std::vector<EngineEntry<PhotoEngine>>& engines, QWidget* parent)
    : QWidget(parent), photos_(context.folders), decoding_(context.jobs) {
  photo_ = new PhotoView(this);
  photoSize_ = new QLabel(this);
  photoSize_->setObjectName(QStringLiteral("Label1"));
  photoSize_->setAccessibleName(tr("Photo size"));
  photoSize_->setTextFormat(Qt::PlainText);
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
      this);
  search_->setEngines(engines);
  auto* rows = new QVBoxLayout(this);
  rows->setContentsMargins(0, 2, 0, 0);
  rows->setSpacing(1);
  rows->addWidget(photo_, 1);
  rows->addWidget(photoSize_);
  rows->addWidget(search_);
}

void PhotoPane::showPhoto(const std::string& registration) {
  missing_ = tr("No photo 写真なし\nSearch, then save it as\n検索して保存:\npics/%1.jpg")
                 .arg(shownText(registration, kLongestTitle));
  if (const auto file = photos_.find(registration)) {
    decode(*file, {.ended = [this](const Status& decoded) { takePhoto(decoded); }});
  } else {
    showPlaceholder();
  }
}

void PhotoPane::decode(const std::filesystem::path& file, const JobSlot::Watch& watch) {
  decoding_.stop();
  auto job = std::make_unique<JpegRead>(file, kEnough, picture_);
  // The usual photo is there at once.
  const Result<JobProgress> begun = job->step(Job::Clock::now() + kAtOnce);
  if (begun && *begun == JobProgress::more) {
    decoding_.start(std::move(job), watch);
  } else {
    watch.ended(begun ? Status() : Status(begun.error()));
  }
}

QSize PhotoPane::trueSize() const {
  const QSize stored(picture_.width, picture_.height);
  return liesOnItsSide(picture_.turn) ? stored.transposed() : stored;
}

void PhotoPane::takePhoto(const Status& decoded) {
  if (decoded) {
    const QSize size = trueSize();
    photoSize_->setText(QStringLiteral("%1 x %2").arg(size.width()).arg(size.height()));
    photoSize_->setAccessibleDescription(photoSize_->text());
  }
  if (decoded && !picture_.pixels.empty()) {
    showDecoded();
  } else {
    showPlaceholder();
  }
}

void PhotoPane::showPlaceholder() {
  const auto placeholder = photos_.placeholder();
  if (!placeholder) {
    decoding_.stop();
    showNothing();
    return;
  }
  decode(*placeholder, {.ended = [this](const Status& decoded) {
    if (decoded && !picture_.pixels.empty()) {
      showDecoded();
    } else {
      showNothing();
    }
  }});
}

void PhotoPane::showNothing() { photo_->showHint(missing_); }

void PhotoPane::showDecoded() {
  photo_->showPicture(upright(picture_), trueSize());
  picture_ = {};
}

void PhotoPane::clear() {
  decoding_.stop();
  photo_->clear();
  photoSize_->clear();
  photoSize_->setAccessibleDescription({});
}

}  // namespace vel
