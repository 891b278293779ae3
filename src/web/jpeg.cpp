#include "web/jpeg.h"

#include <algorithm>
#include <csetjmp>
#include <cstdio>
#include <string_view>
#include <utility>

#include <jpeglib.h>
// Behind jpeglib.h: it is not complete by itself.
#include <jerror.h>

namespace vel {
namespace {

// A larger file is taken for no photo.
constexpr std::size_t kLargestFile = std::size_t{256} << 20;
constexpr std::size_t kReadAtOnce = std::size_t{256} << 10;
// A picture in thousands of passes would keep the machine busy for hours.
constexpr int kMostPasses = 500;

constexpr int kExifMarker = JPEG_APP0 + 1;
constexpr std::string_view kExif("Exif\0\0", 6);
constexpr unsigned kOrientationTag = 0x0112;

// Numbers of the camera's notes, in whichever order they have their bytes.
class ExifNumbers {
 public:
  explicit ExifNumbers(std::string_view tiff) : tiff_(tiff), bigEndian_(tiff.starts_with("MM")) {}

  [[nodiscard]] unsigned long of(std::size_t offset, std::size_t size) const {
    if (offset > tiff_.size() || size > tiff_.size() - offset) return 0;
    unsigned long number = 0;
    for (std::size_t i = 0; i < size; ++i) {
      const std::size_t place = bigEndian_ ? offset + i : offset + size - 1 - i;
      number = number << 8 | static_cast<unsigned char>(tiff_[place]);
    }
    return number;
  }

 private:
  std::string_view tiff_;
  bool bigEndian_;
};

int orientationOf(std::string_view exif) {
  constexpr std::size_t kEntrySize = 12;
  if (!exif.starts_with(kExif)) return 1;
  const ExifNumbers numbers(exif.substr(kExif.size()));
  const std::size_t directory = numbers.of(4, 4);
  const std::size_t entries = numbers.of(directory, 2);
  for (std::size_t i = 0; i < entries; ++i) {
    const std::size_t entry = directory + 2 + i * kEntrySize;
    if (numbers.of(entry, 2) != kOrientationTag) continue;
    const unsigned long turn = numbers.of(entry + 8, 2);
    return turn >= 1 && turn <= 8 ? static_cast<int>(turn) : 1;
  }
  return 1;
}

struct Errors {
  jpeg_error_mgr base;
  std::jmp_buf leave;
  bool damaged;
};

Errors& errorsOf(j_common_ptr info) { return *reinterpret_cast<Errors*>(info->err); }

// The library's own words go nowhere: the caller needs to know only whether
// the picture is whole.
extern "C" void velJpegFails(j_common_ptr info) { std::longjmp(errorsOf(info).leave, 1); }

extern "C" void velJpegWarns(j_common_ptr info, int level) {
  if (level >= 0) return;
  switch (info->err->msg_code) {
    case JWRN_HIT_MARKER:
    case JWRN_HUFF_BAD_CODE:
    case JWRN_ARITH_BAD_CODE:
    case JWRN_EXTRANEOUS_DATA:
    case JWRN_JPEG_EOF:
    case JWRN_MUST_RESYNC:
      errorsOf(info).damaged = true;
      break;
    default:
      break;
  }
}

extern "C" void velJpegSays(j_common_ptr) {}

}  // namespace

// The library leaves its calls by a jump: no object with a destructor may live
// in a function that calls it.
class JpegRead::Decoder {
 public:
  Decoder(const std::vector<unsigned char>& bytes, int enough, JpegPicture& picture)
      : bytes_(bytes), enough_(enough), picture_(picture) {
    info_.err = jpeg_std_error(&errors_.base);
    errors_.base.error_exit = velJpegFails;
    errors_.base.emit_message = velJpegWarns;
    errors_.base.output_message = velJpegSays;
    errors_.damaged = false;
  }
  ~Decoder() { jpeg_destroy_decompress(&info_); }
  Decoder(const Decoder&) = delete;
  Decoder& operator=(const Decoder&) = delete;

  enum class Outcome { more, done, failed };

  Outcome step(Clock::time_point deadline) {
    if (setjmp(errors_.leave) != 0) return Outcome::failed;
    do {
      if (!act()) return Outcome::failed;
      if (errors_.damaged) return Outcome::failed;
      if (stage_ == Stage::over) return Outcome::done;
    } while (Clock::now() < deadline);
    return Outcome::more;
  }

 private:
  enum class Stage { header, passes, rows, end, over };

  // One small piece of the work. False when the picture is none.
  bool act() {
    switch (stage_) {
      case Stage::header:
        return takeHeader();
      case Stage::passes:
        if (jpeg_consume_input(&info_) == JPEG_REACHED_EOI) {
          jpeg_start_output(&info_, info_.input_scan_number);
          stage_ = Stage::rows;
        }
        return info_.input_scan_number <= kMostPasses;
      case Stage::rows:
        takeRow();
        break;
      case Stage::end:
        if (info_.buffered_image) jpeg_finish_output(&info_);
        jpeg_finish_decompress(&info_);
        stage_ = Stage::over;
        break;
      case Stage::over:
        break;
    }
    return true;
  }

  bool takeHeader() {
    jpeg_create_decompress(&info_);
    jpeg_save_markers(&info_, kExifMarker, 0xFFFF);
    jpeg_mem_src(&info_, bytes_.data(), static_cast<unsigned long>(bytes_.size()));
    jpeg_read_header(&info_, TRUE);
    picture_.width = static_cast<int>(info_.image_width);
    picture_.height = static_cast<int>(info_.image_height);
    for (jpeg_saved_marker_ptr marker = info_.marker_list; marker != nullptr;
         marker = marker->next) {
      if (marker->marker != kExifMarker || picture_.turn != 1) continue;
      picture_.turn =
          orientationOf({reinterpret_cast<const char*>(marker->data), marker->data_length});
    }
    const bool inPasses = jpeg_has_multiple_scans(&info_) != FALSE;
    const long long pixels = static_cast<long long>(picture_.width) * picture_.height;
    if (pixels > (inPasses ? kLargestPixelsInPasses : kLargestPixels)) {
      stage_ = Stage::over;
      return true;
    }
    startOutput(inPasses);
    return true;
  }

  void startOutput(bool inPasses) {
    constexpr unsigned kWhole = 8;
    const auto longer = static_cast<unsigned>(std::max(picture_.width, picture_.height));
    info_.scale_denom = kWhole;
    info_.scale_num = 1;
    while (info_.scale_num < kWhole &&
           longer * info_.scale_num / kWhole < static_cast<unsigned>(enough_)) {
      ++info_.scale_num;
    }
    const bool fourInks = info_.jpeg_color_space == JCS_CMYK || info_.jpeg_color_space == JCS_YCCK;
    info_.out_color_space = fourInks ? JCS_CMYK : JCS_RGB;
    info_.buffered_image = inPasses ? TRUE : FALSE;
    jpeg_start_decompress(&info_);
    picture_.columns = static_cast<int>(info_.output_width);
    picture_.rows = static_cast<int>(info_.output_height);
    picture_.pixels.resize(std::size_t{info_.output_width} * info_.output_height * 3);
    row_.resize(std::size_t{info_.output_width} * 4);
    stage_ = inPasses ? Stage::passes : Stage::rows;
  }

  void takeRow() {
    unsigned char* target =
        picture_.pixels.data() + std::size_t{info_.output_scanline} * info_.output_width * 3;
    const bool fourInks = info_.out_color_space == JCS_CMYK;
    JSAMPROW into = fourInks ? row_.data() : target;
    jpeg_read_scanlines(&info_, &into, 1);
    if (fourInks) printInks(target);
    if (info_.output_scanline == info_.output_height) stage_ = Stage::end;
  }

  // Programs that write such pictures store how much of the light is left.
  void printInks(unsigned char* target) const {
    const bool inverted = info_.saw_Adobe_marker != FALSE;
    for (std::size_t i = 0; i < info_.output_width; ++i) {
      const unsigned char* inks = row_.data() + 4 * i;
      const auto light = [inverted](unsigned ink) { return inverted ? ink : 255 - ink; };
      for (std::size_t colour = 0; colour < 3; ++colour) {
        *target++ = static_cast<unsigned char>(light(inks[colour]) * light(inks[3]) / 255);
      }
    }
  }

  const std::vector<unsigned char>& bytes_;
  int enough_;
  JpegPicture& picture_;
  jpeg_decompress_struct info_ = {};
  Errors errors_ = {};
  Stage stage_ = Stage::header;
  std::vector<unsigned char> row_;
};

JpegRead::JpegRead(std::filesystem::path file, int enough, JpegPicture& picture)
    : file_(std::move(file)), enough_(enough), picture_(picture) {
  picture_ = {};
}

JpegRead::~JpegRead() = default;

Result<JobProgress> JpegRead::step(Clock::time_point deadline) {
  if (decoder_ == nullptr) {
    const Result<JobProgress> reading = readOn(deadline);
    if (!reading || decoder_ == nullptr || Clock::now() >= deadline) return reading;
  }
  switch (decoder_->step(deadline)) {
    case Decoder::Outcome::more:
      return JobProgress::more;
    case Decoder::Outcome::done:
      return JobProgress::done;
    case Decoder::Outcome::failed:
      break;
  }
  picture_ = {};
  return ErrorNumber::deviceIo;
}

Result<JobProgress> JpegRead::readOn(Clock::time_point deadline) {
  if (!source_) {
    // Opening anything else may never come back.
    if (!fileExists(file_)) return ErrorNumber::fileNotFound;
    Result<InputFile> opened = InputFile::open(file_);
    if (!opened) return opened.error();
    source_.emplace(std::move(*opened));
  }
  do {
    const std::size_t before = bytes_.size();
    bytes_.resize(before + kReadAtOnce);
    const Result<std::size_t> size =
        source_->read(reinterpret_cast<char*>(bytes_.data() + before), kReadAtOnce);
    if (!size) return size.error();
    bytes_.resize(before + *size);
    if (bytes_.size() > kLargestFile || (bytes_.empty() && *size == 0)) {
      return ErrorNumber::deviceIo;
    }
    if (*size == 0) {
      source_.reset();
      decoder_ = std::make_unique<Decoder>(bytes_, enough_, picture_);
      break;
    }
  } while (Clock::now() < deadline);
  return JobProgress::more;
}

}  // namespace vel
