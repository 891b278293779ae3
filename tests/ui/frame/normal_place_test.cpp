#include <QRect>

#include <gtest/gtest.h>

#include "core/ui/outer_placement.h"

namespace vel {
namespace {

// In twips. The normal places end far from the edges of a maximised window.
constexpr QRect kNormal(600, 450, 15000, 9000);
constexpr QRect kResized(600, 450, 14000, 8000);
constexpr QRect kMaximised(0, 0, 21000, 15000);
constexpr QSize kAlmostMaximised(20910, 14700);

// What stood longer was no report ahead of the maximised state.
constexpr std::chrono::milliseconds kLongEnough{300};

TEST(NormalPlace, IsTheLastOneRecorded) {
  NormalPlace place;
  NormalPlace::Moment now{std::chrono::hours(1)};
  EXPECT_TRUE(place.latest().isNull());
  place.record(kNormal, now);
  place.record(kResized, now);
  EXPECT_EQ(place.latest(), kResized);
}

TEST(NormalPlace, WithoutARecordMaximisingGivesNone) {
  NormalPlace place;
  NormalPlace::Moment now{std::chrono::hours(1)};
  place.windowMaximised(kMaximised.size(), now);
  EXPECT_TRUE(place.latest().isNull());
}

TEST(NormalPlace, ASizeReportedAMomentBeforeTheMaximisedStateDoesNotCount) {
  NormalPlace place;
  NormalPlace::Moment now{std::chrono::hours(1)};
  place.record(kNormal, now);
  place.record(kMaximised, now);
  place.windowMaximised(kMaximised.size(), now);
  EXPECT_EQ(place.latest(), kNormal);
}

TEST(NormalPlace, NorDoesOneThatDiffersByAFrame) {
  NormalPlace place;
  NormalPlace::Moment now{std::chrono::hours(1)};
  place.record(kNormal, now);
  place.record(QRect(kMaximised.topLeft(), kAlmostMaximised), now);
  place.windowMaximised(kMaximised.size(), now);
  EXPECT_EQ(place.latest(), kNormal);
}

TEST(NormalPlace, AResizeAMomentBeforeMaximisingCounts) {
  NormalPlace place;
  NormalPlace::Moment now{std::chrono::hours(1)};
  place.record(kNormal, now);
  place.record(kResized, now);
  place.windowMaximised(kMaximised.size(), now);
  EXPECT_EQ(place.latest(), kResized);
}

TEST(NormalPlace, AResizeAMomentBeforeMaximisingCountsWhereTheStateComesBeforeTheSize) {
  NormalPlace place;
  NormalPlace::Moment now{std::chrono::hours(1)};
  place.record(kNormal, now);
  place.record(kResized, now);
  place.windowMaximised(kResized.size(), now);
  place.windowMaximised(kMaximised.size(), now);
  EXPECT_EQ(place.latest(), kResized);
}

TEST(NormalPlace, ASizeThatStoodForAWhileCountsHoweverLarge) {
  NormalPlace place;
  NormalPlace::Moment now{std::chrono::hours(1)};
  place.record(kNormal, now);
  place.record(kMaximised, now);
  now += kLongEnough;
  place.windowMaximised(kMaximised.size(), now);
  EXPECT_EQ(place.latest(), kMaximised);
}

TEST(NormalPlace, AnotherSizeOfTheMaximisedWindowLaterOnChangesNothing) {
  NormalPlace place;
  NormalPlace::Moment now{std::chrono::hours(1)};
  place.record(kNormal, now);
  place.record(kMaximised, now);
  place.windowMaximised(kMaximised.size(), now);
  now += kLongEnough;
  place.windowMaximised(kMaximised.size() / 2, now);
  EXPECT_EQ(place.latest(), kNormal);
}

TEST(NormalPlace, WhatWasDroppedStaysSoAfterTheWindowIsRestored) {
  NormalPlace place;
  NormalPlace::Moment now{std::chrono::hours(1)};
  place.record(kNormal, now);
  place.record(kMaximised, now);
  place.windowMaximised(kMaximised.size(), now);
  place.record(kResized, now);
  EXPECT_EQ(place.latest(), kResized);
  place.windowMaximised(kResized.size(), now);
  EXPECT_EQ(place.latest(), kNormal);
}

}  // namespace
}  // namespace vel
