// Photos: whatever the file holds, a picture of the size that is told, or none.

#include "tests/fuzz/fuzz_support.h"
#include "web/jpeg.h"

namespace vel::fuzz {
namespace {

void run(const Station& station, std::string_view bytes) {
  const auto file = station.folders().pics / "JA8089.jpg";
  put(file, bytes);
  constexpr int kEnough = 64;
  JpegPicture picture;
  JpegRead job(file, kEnough, picture);
  while (true) {
    const Result<JobProgress> progress = job.step(Job::Clock::now() + std::chrono::milliseconds(5));
    if (!progress || *progress == JobProgress::done) {
      check(progress.ok() || picture.pixels.empty(), "a picture of a file that is none");
      break;
    }
  }
  check(picture.turn >= 1 && picture.turn <= 8, "no orientation");
  check(picture.width >= 0 && picture.height >= 0, "no size");
  if (picture.pixels.empty()) return;
  const auto pixels =
      static_cast<std::size_t>(picture.columns) * static_cast<std::size_t>(picture.rows);
  check(picture.pixels.size() == 3 * pixels, "another number of pixels");
  check(picture.columns <= picture.width && picture.rows <= picture.height, "a larger picture");
}

}  // namespace
}  // namespace vel::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const vel::fuzz::Station station;
  vel::fuzz::run(station, {reinterpret_cast<const char*>(data), size});
  return 0;
}
