#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <vector>

#include "core/file.h"
#include "core/job.h"

namespace vel {

/// A JPEG file's picture, as its pixels are stored: `turn` says how it is to
/// be seen.
struct JpegPicture {
  /// The size that the file tells, before turning; 0 x 0 before it is known.
  int width = 0;
  int height = 0;
  /// The camera's orientation, 1 to 8; 1 is upright.
  int turn = 1;
  /// The decoded picture, often smaller than the true one: red, green and
  /// blue, row after row without gaps. Empty for one that is too large.
  int columns = 0;
  int rows = 0;
  std::vector<unsigned char> pixels;
};

/// Larger pictures are not decoded: their size is all that is told of them.
/// Those that come in several passes take far more memory and time.
constexpr long long kLargestPixels = 100'000'000;
constexpr long long kLargestPixelsInPasses = 25'000'000;

/// Reads and decodes a JPEG file in steps. Fails for what is no such file, for
/// one that is cut off, and for one that is damaged in the middle; whatever
/// stands behind the end of the picture does not matter.
class JpegRead : public Job {
 public:
  /// The picture outlives the job. It is decoded to its size, or to a smaller
  /// one whose longer side has still about `enough` pixels.
  JpegRead(std::filesystem::path file, int enough, JpegPicture& picture);
  ~JpegRead() override;

  Result<JobProgress> step(Clock::time_point deadline) override;

 private:
  class Decoder;

  Result<JobProgress> readOn(Clock::time_point deadline);

  std::filesystem::path file_;
  int enough_;
  JpegPicture& picture_;
  std::vector<unsigned char> bytes_;
  std::optional<InputFile> source_;  // while it is being read
  std::unique_ptr<Decoder> decoder_;
};

}  // namespace vel
