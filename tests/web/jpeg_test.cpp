#include "web/jpeg.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include <gtest/gtest.h>
#include <jpeglib.h>

#include "tests/support/system_files.h"
#include "tests/support/test_files.h"

namespace vel {
namespace {

struct Kind {
  bool inPasses = false;
  bool grey = false;
};

/// A JPEG file of a picture full of detail.
std::string jpegOf(int width, int height, Kind kind = {}) {
  jpeg_compress_struct info;
  jpeg_error_mgr errors;
  info.err = jpeg_std_error(&errors);
  jpeg_create_compress(&info);
  unsigned char* bytes = nullptr;
  unsigned long size = 0;
  jpeg_mem_dest(&info, &bytes, &size);
  info.image_width = static_cast<JDIMENSION>(width);
  info.image_height = static_cast<JDIMENSION>(height);
  info.input_components = kind.grey ? 1 : 3;
  info.in_color_space = kind.grey ? JCS_GRAYSCALE : JCS_RGB;
  jpeg_set_defaults(&info);
  jpeg_set_quality(&info, 95, TRUE);
  if (kind.inPasses) jpeg_simple_progression(&info);
  jpeg_start_compress(&info, TRUE);
  std::vector<unsigned char> row(static_cast<std::size_t>(width * info.input_components));
  std::uint32_t noise = 1;
  for (int y = 0; y < height; ++y) {
    for (unsigned char& sample : row) {
      noise = noise * 1664525 + 1013904223;
      sample = static_cast<unsigned char>(noise >> 24);
    }
    // The upper left corner is red.
    if (y < 8 && !kind.grey) {
      for (int x = 0; x < 8 && x < width; ++x) {
        row[static_cast<std::size_t>(3 * x)] = 255;
        row[static_cast<std::size_t>(3 * x + 1)] = row[static_cast<std::size_t>(3 * x + 2)] = 0;
      }
    }
    JSAMPROW line = row.data();
    jpeg_write_scanlines(&info, &line, 1);
  }
  jpeg_finish_compress(&info);
  std::string file(reinterpret_cast<const char*>(bytes), size);
  jpeg_destroy_compress(&info);
  std::free(bytes);
  return file;
}

/// The same file with another size in its header.
std::string withSize(std::string file, int width, int height, bool inPasses) {
  const std::size_t frame = file.find(inPasses ? "\xFF\xC2" : "\xFF\xC0");
  EXPECT_NE(frame, std::string::npos);
  for (const auto& [place, size] : {std::pair(frame + 5, height), std::pair(frame + 7, width)}) {
    file[place] = static_cast<char>(size >> 8);
    file[place + 1] = static_cast<char>(size & 0xFF);
  }
  return file;
}

/// The same file with a camera's orientation.
std::string turned(const std::string& file, int turn) {
  std::string exif("Exif\0\0MM\0\x2A\0\0\0\x08\0\x01\x01\x12\0\x03\0\0\0\x01\0", 25);
  exif += static_cast<char>(turn);
  exif += std::string("\0\0\0\0\0\0", 6);
  std::string marker = "\xFF\xE1";
  marker += '\0';
  marker += static_cast<char>(exif.size() + 2);
  return file.substr(0, 2) + marker + exif + file.substr(2);
}

class Jpeg : public testing::Test {
 protected:
  /// True when the bytes are a photo, or one that is too large.
  bool read(std::string_view bytes, int enough = 800) {
    test::writeBytes(file_, bytes);
    return readFile(enough);
  }
  bool readFile(int enough = 800) {
    JpegRead job(file_, enough, picture_);
    for (steps_ = 1;; ++steps_) {
      const Result<JobProgress> progress = job.step(Job::Clock::now());
      if (!progress) return false;
      if (*progress == JobProgress::done) return true;
    }
  }
  [[nodiscard]] bool isShown() const { return !picture_.pixels.empty(); }

  test::TemporaryFolder folder_;
  std::filesystem::path file_ = folder_ / "JA8089.jpg";
  JpegPicture picture_;
  int steps_ = 0;
};

TEST_F(Jpeg, APictureComesWithItsSizeAndColours) {
  for (const bool inPasses : {false, true}) {
    ASSERT_TRUE(read(jpegOf(300, 200, {.inPasses = inPasses})));
    EXPECT_EQ(picture_.width, 300);
    EXPECT_EQ(picture_.height, 200);
    EXPECT_EQ(picture_.turn, 1);
    ASSERT_EQ(picture_.columns, 300);
    ASSERT_EQ(picture_.rows, 200);
    ASSERT_EQ(picture_.pixels.size(), 300u * 200 * 3);
    EXPECT_GT(picture_.pixels[3 * 302], 220);
    EXPECT_LT(picture_.pixels[3 * 302 + 1], 60);
    EXPECT_LT(picture_.pixels[3 * 302 + 2], 60);
    EXPECT_GT(steps_, 100) << "each step does a little";
  }
}

TEST_F(Jpeg, AGreyPictureIsShownToo) {
  ASSERT_TRUE(read(jpegOf(30, 20, {.grey = true})));
  EXPECT_EQ(picture_.pixels.size(), 30u * 20 * 3);
}

TEST_F(Jpeg, ALargePictureIsDecodedAsLargeAsNeededAndTellsItsTrueSize) {
  ASSERT_TRUE(read(jpegOf(1600, 1200), 100));
  EXPECT_EQ(picture_.width, 1600);
  EXPECT_EQ(picture_.height, 1200);
  EXPECT_EQ(picture_.columns, 200);
  EXPECT_EQ(picture_.rows, 150);
}

TEST_F(Jpeg, TheCamerasOrientationIsTold) {
  for (int turn = 1; turn <= 8; ++turn) {
    ASSERT_TRUE(read(turned(jpegOf(30, 20), turn)));
    EXPECT_EQ(picture_.turn, turn);
  }
  ASSERT_TRUE(read(turned(jpegOf(30, 20), 9)));
  EXPECT_EQ(picture_.turn, 1);
}

TEST_F(Jpeg, OneThatIsCutOffAnywhereIsNone) {
  for (const bool inPasses : {false, true}) {
    const std::string whole = jpegOf(100, 80, {.inPasses = inPasses});
    for (std::size_t size = 0; size < whole.size() - 1; size += 1 + whole.size() / 40) {
      EXPECT_FALSE(read(whole.substr(0, size))) << size << " of " << whole.size();
      EXPECT_FALSE(isShown());
    }
    EXPECT_FALSE(read(whole.substr(0, whole.size() - 1)));
  }
}

TEST_F(Jpeg, OneThatIsDamagedInTheMiddleIsNone) {
  for (const bool inPasses : {false, true}) {
    std::string damaged = jpegOf(400, 300, {.inPasses = inPasses});
    for (std::size_t i = 0; i < 200; ++i) damaged[damaged.size() / 2 + i] = '\x5A';
    EXPECT_FALSE(read(damaged)) << inPasses;
    EXPECT_FALSE(isShown());
    std::string hole = jpegOf(400, 300, {.inPasses = inPasses});
    hole.erase(hole.size() / 2, 1000);
    EXPECT_FALSE(read(hole)) << inPasses;
  }
}

TEST_F(Jpeg, WhatStandsBehindTheEndDoesNotMatter) {
  EXPECT_TRUE(read(jpegOf(100, 80) + std::string(100'000, 'x')));
  EXPECT_TRUE(isShown());
}

TEST_F(Jpeg, ATooLargePictureTellsItsSizeOnly) {
  const std::string usual = jpegOf(64, 64);
  ASSERT_TRUE(read(withSize(usual, 10'001, 10'000, false)));
  EXPECT_EQ(picture_.width, 10'001);
  EXPECT_EQ(picture_.height, 10'000);
  EXPECT_FALSE(isShown());
  const std::string inPasses = jpegOf(64, 64, {.inPasses = true});
  ASSERT_TRUE(read(withSize(inPasses, 20'000, 20'000, true)));
  EXPECT_EQ(picture_.width, 20'000);
  EXPECT_FALSE(isShown());
  ASSERT_TRUE(read(withSize(inPasses, 5'001, 5'000, true)));
  EXPECT_FALSE(isShown());
  // At the limits it is tried, and these are not whole.
  EXPECT_FALSE(read(withSize(usual, 10'000, 10'000, false)));
  EXPECT_FALSE(read(withSize(inPasses, 5'000, 5'000, true)));
}

TEST_F(Jpeg, WhatIsNoJpegIsNone) {
  for (const char* bytes : {"", "GIF89a", "\xFF\xD8", "\xFF\xD8\xFF\xD9", "no picture at all"}) {
    EXPECT_FALSE(read(bytes));
  }
  std::filesystem::remove(file_);
  EXPECT_FALSE(readFile());
}

TEST_F(Jpeg, APipeAndAFolderAreNeverOpened) {
  file_ = test::specialFile(folder_.path());
  EXPECT_FALSE(readFile());
  std::filesystem::remove(file_);
  std::filesystem::create_directory(file_);
  EXPECT_FALSE(readFile());
}

}  // namespace
}  // namespace vel
