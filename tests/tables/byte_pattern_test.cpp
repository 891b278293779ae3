#include "tables/byte_pattern.h"

#include <cstddef>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

namespace vel {
namespace {

/// A text with the slack around it that a search may read.
class Padded {
 public:
  explicit Padded(std::string_view text, char padding)
      : buffer_(std::string(BytePattern::kSlack, padding) + std::string(text) +
                std::string(BytePattern::kSlack, padding)) {}

  [[nodiscard]] std::string_view text() const {
    return std::string_view(buffer_).substr(BytePattern::kSlack,
                                            buffer_.size() - 2 * BytePattern::kSlack);
  }

 private:
  std::string buffer_;
};

std::vector<std::size_t> places(BytePattern pattern, std::string_view text) {
  pattern.prepare(text);
  std::vector<std::size_t> found;
  const char* const end = text.data() + text.size();
  for (const char* place = pattern.find(text.data(), end); place != end;
       place = pattern.find(place + 1, end)) {
    found.push_back(static_cast<std::size_t>(place - text.data()));
  }
  return found;
}

std::vector<std::size_t> placesOneByOne(std::string_view pattern, std::string_view text) {
  std::vector<std::size_t> found;
  for (std::size_t at = text.find(pattern); at != std::string_view::npos;
       at = text.find(pattern, at + 1)) {
    found.push_back(at);
  }
  return found;
}

TEST(BytePatternTest, EveryWayToSearchFindsEveryPlace) {
  std::mt19937 random(8089);
  const auto upTo = [&](std::size_t most) {
    return std::uniform_int_distribution<std::size_t>(0, most)(random);
  };
  for (int round = 0; round < 400; ++round) {
    std::string text(upTo(3000), ' ');
    for (char& c : text) c = static_cast<char>('A' + upTo(2));
    std::string pattern(1 + upTo(9), ' ');
    for (char& c : pattern) c = static_cast<char>('A' + upTo(2));
    const Padded padded(text, 'A');
    const auto expected = placesOneByOne(pattern, text);
    for (const ByteSearcher& searcher : byteSearchers()) {
      EXPECT_EQ(places(BytePattern(pattern, searcher), padded.text()), expected)
          << pattern << " in " << text;
    }
  }
}

TEST(BytePatternTest, ALonePlaceIsFoundWhereverItIs) {
  constexpr std::string_view kPattern = "\nJA8089";
  for (std::size_t place = 0; place < 1200; ++place) {
    std::string text(1200 + kPattern.size(), 'x');
    text.replace(place, kPattern.size(), kPattern);
    const Padded padded(text, 'x');
    for (const ByteSearcher& searcher : byteSearchers()) {
      EXPECT_EQ(places(BytePattern(std::string(kPattern), searcher), padded.text()),
                std::vector<std::size_t>{place});
    }
  }
}

TEST(BytePatternTest, PatternsOfAnyLengthAreFoundInALongText) {
  // Longer than what is looked through in one go, at places around its ends.
  constexpr std::size_t kPart = kMostStrides * kSearchStride;
  for (std::size_t length = 1; length <= 45; ++length) {
    std::string pattern;
    for (std::size_t i = 0; i < length; ++i) pattern += static_cast<char>('A' + i % 23);
    std::string text(3 * kPart, 'x');
    for (const std::size_t around : {kPart, 2 * kPart}) {
      // What is nearly the pattern before it.
      text.replace(around - 200, length, pattern.substr(0, length - 1) + '-');
      text.replace(around - length / 2, length, pattern);
      text.replace(around + 64, length, pattern);
    }
    text.replace(text.size() - length, length, pattern);
    const Padded padded(text, 'A');
    const auto expected = placesOneByOne(pattern, text);
    for (const ByteSearcher& searcher : byteSearchers()) {
      EXPECT_EQ(places(BytePattern(pattern, searcher), padded.text()), expected) << pattern;
    }
  }
}

TEST(BytePatternTest, ASearchMayGoBackInItsBlock) {
  const Padded padded(std::string(300, 'x') + "JA8089" + std::string(300, 'x') + "JA8089x", 'x');
  const char* const begin = padded.text().data();
  const char* const end = begin + padded.text().size();
  for (const ByteSearcher& searcher : byteSearchers()) {
    BytePattern pattern("JA8089", searcher);
    pattern.prepare(padded.text());
    EXPECT_EQ(pattern.find(begin + 301, end), begin + 606);
    EXPECT_EQ(pattern.find(begin, end), begin + 300);
    EXPECT_EQ(pattern.find(begin + 607, end), end);
  }
}

TEST(BytePatternTest, ABlockInThePlaceOfAnotherIsSearchedAnew) {
  std::string buffer(2 * BytePattern::kSlack + 500, 'x');
  const std::string_view block = std::string_view(buffer).substr(BytePattern::kSlack, 500);
  const char* const end = block.data() + block.size();
  for (const ByteSearcher& searcher : byteSearchers()) {
    BytePattern pattern("JA8089", searcher);
    pattern.prepare(block);
    EXPECT_EQ(pattern.find(block.data(), end), end);
    buffer.replace(BytePattern::kSlack + 400, 6, "JA8089");
    pattern.prepare(block);
    EXPECT_EQ(pattern.find(block.data(), end), block.data() + 400);
    buffer.replace(BytePattern::kSlack + 400, 6, "xxxxxx");
  }
}

TEST(BytePatternTest, WhatStandsAroundTheTextIsNotFound) {
  const Padded padded("AAAA", 'A');
  for (const ByteSearcher& searcher : byteSearchers()) {
    EXPECT_EQ(places(BytePattern("AAA", searcher), padded.text()),
              (std::vector<std::size_t>{0, 1}));
    EXPECT_EQ(places(BytePattern("AAAAA", searcher), padded.text()), std::vector<std::size_t>{});
  }
}

TEST(BytePatternTest, AnUnluckyChoiceOfBytesIsMadeAgain) {
  // The first block knows nothing of what all others are full of.
  const std::string calm(20000, 'x');
  std::string noisy;
  while (noisy.size() < 100000) noisy += "JA8089_JA808_JA80_";
  const Padded first(calm, 'x');
  const Padded later(noisy + "JA8089B", 'x');
  for (const ByteSearcher& searcher : byteSearchers()) {
    BytePattern pattern("JA8089B", searcher);
    pattern.prepare(first.text());
    for (int block = 0; block < 5; ++block) {
      pattern.prepare(later.text());
      const char* const end = later.text().data() + later.text().size();
      EXPECT_EQ(pattern.find(later.text().data(), end), end - 7);
    }
  }
}

}  // namespace
}  // namespace vel
