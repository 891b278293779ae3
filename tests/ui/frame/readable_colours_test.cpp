#include "core/ui/readable_colours.h"

#include <QApplication>
#include <QTest>

#include <gtest/gtest.h>

namespace vel {
namespace {

QPalette theme(const QColor& base, const QColor& text, const QColor& selected,
               const QColor& selectedText, const QColor& hint) {
  QPalette colours;
  colours.setColor(QPalette::Base, base);
  colours.setColor(QPalette::Text, text);
  colours.setColor(QPalette::Highlight, selected);
  colours.setColor(QPalette::HighlightedText, selectedText);
  colours.setColor(QPalette::PlaceholderText, hint);
  return colours;
}

TEST(ReadableColours, ContrastIsThatOfTheWebsRules) {
  EXPECT_NEAR(contrastOf(Qt::black, Qt::white), 21, 0.01);
  EXPECT_NEAR(contrastOf(Qt::white, Qt::white), 1, 0.01);
  EXPECT_NEAR(contrastOf(QColor(0x77, 0x77, 0x77), Qt::white), 4.48, 0.01);
}

TEST(ReadableColours, WhatIsTooWeakIsStrengthenedInLightAndDarkThemes) {
  for (const QPalette& weak :
       {theme(Qt::white, Qt::black, QColor(48, 140, 198), Qt::white, QColor(0, 0, 0, 128)),
        theme(QColor(30, 30, 30), Qt::white, QColor(120, 160, 200), Qt::white,
              QColor(255, 255, 255, 60)),
        theme(Qt::white, Qt::black, QColor(60, 60, 200), Qt::black, QColor(200, 200, 200))}) {
    const QPalette strong = readableColours(weak);
    EXPECT_GE(
        contrastOf(strong.color(QPalette::Highlight), strong.color(QPalette::HighlightedText)),
        4.5);
    EXPECT_GE(contrastOf(strong.color(QPalette::PlaceholderText), strong.color(QPalette::Base)),
              4.5);
    EXPECT_EQ(strong.color(QPalette::Text), weak.color(QPalette::Text));
  }
}

TEST(ReadableColours, AThemeThatCanBeReadStaysAsItIs) {
  const QPalette good =
      theme(Qt::white, Qt::black, QColor(0, 60, 140), Qt::white, QColor(90, 90, 90));
  EXPECT_EQ(readableColours(good), good);
}

TEST(ReadableColours, AnotherThemeIsStrengthenedTooWhileTheProgramRuns) {
  const QPalette before = QApplication::palette();
  {
    const ReadableColours colours;
    QApplication::setPalette(
        theme(Qt::white, Qt::black, QColor(48, 140, 198), Qt::white, Qt::gray));
    EXPECT_TRUE(QTest::qWaitFor([] {
      const QPalette now = QApplication::palette();
      return contrastOf(now.color(QPalette::Highlight), now.color(QPalette::HighlightedText)) >=
             4.5;
    }));
  }
  QApplication::setPalette(before);
}

}  // namespace
}  // namespace vel
