#include <QTest>

#include <gtest/gtest.h>

#include "core/ui/outer_placement.h"

namespace vel {
namespace {

// In twips. The normal places end far from the edges of a maximised window.
constexpr QRect kNormal(600, 450, 15000, 9000);
constexpr QRect kResized(600, 450, 14000, 8000);
constexpr QRect kMaximised(0, 0, 21000, 15000);
constexpr QSize kAlmostMaximised(20910, 14700);

// In milliseconds: what stood longer was no report ahead of the maximised state.
constexpr int kLongEnough = 300;

TEST(NormalPlace, IsTheLastOneRecorded) {
  NormalPlace place;
  EXPECT_TRUE(place.latest().isNull());
  place.record(kNormal);
  place.record(kResized);
  EXPECT_EQ(place.latest(), kResized);
}

TEST(NormalPlace, WithoutARecordMaximisingGivesNone) {
  NormalPlace place;
  place.windowMaximised(kMaximised.size());
  EXPECT_TRUE(place.latest().isNull());
}

TEST(NormalPlace, ASizeReportedAMomentBeforeTheMaximisedStateDoesNotCount) {
  NormalPlace place;
  place.record(kNormal);
  place.record(kMaximised);
  place.windowMaximised(kMaximised.size());
  EXPECT_EQ(place.latest(), kNormal);
}

TEST(NormalPlace, NorDoesOneThatDiffersByAFrame) {
  NormalPlace place;
  place.record(kNormal);
  place.record(QRect(kMaximised.topLeft(), kAlmostMaximised));
  place.windowMaximised(kMaximised.size());
  EXPECT_EQ(place.latest(), kNormal);
}

TEST(NormalPlace, AResizeAMomentBeforeMaximisingCounts) {
  NormalPlace place;
  place.record(kNormal);
  place.record(kResized);
  place.windowMaximised(kMaximised.size());
  EXPECT_EQ(place.latest(), kResized);
}

TEST(NormalPlace, AResizeAMomentBeforeMaximisingCountsWhereTheStateComesBeforeTheSize) {
  NormalPlace place;
  place.record(kNormal);
  place.record(kResized);
  place.windowMaximised(kResized.size());
  place.windowMaximised(kMaximised.size());
  EXPECT_EQ(place.latest(), kResized);
}

TEST(NormalPlace, ASizeThatStoodForAWhileCountsHoweverLarge) {
  NormalPlace place;
  place.record(kNormal);
  place.record(kMaximised);
  QTest::qWait(kLongEnough);
  place.windowMaximised(kMaximised.size());
  EXPECT_EQ(place.latest(), kMaximised);
}

TEST(NormalPlace, AnotherSizeOfTheMaximisedWindowLaterOnChangesNothing) {
  NormalPlace place;
  place.record(kNormal);
  place.record(kMaximised);
  place.windowMaximised(kMaximised.size());
  QTest::qWait(kLongEnough);
  place.windowMaximised(kMaximised.size() / 2);
  EXPECT_EQ(place.latest(), kNormal);
}

TEST(NormalPlace, WhatWasDroppedStaysSoAfterTheWindowIsRestored) {
  NormalPlace place;
  place.record(kNormal);
  place.record(kMaximised);
  place.windowMaximised(kMaximised.size());
  place.record(kResized);
  EXPECT_EQ(place.latest(), kResized);
  place.windowMaximised(kResized.size());
  EXPECT_EQ(place.latest(), kNormal);
}

}  // namespace
}  // namespace vel
