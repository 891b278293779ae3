#include "tour/tour_steps.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/text.h"

namespace vel {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

struct ExpectedStep {
  int number;
  int left;  ///< -1 where the step has no offset of its own
  int top;
  bool panel;
  std::string pointers;
  std::string english;  ///< empty where the wording is ours
};

const std::vector<ExpectedStep>& expectedSteps() {
  static const std::vector<ExpectedStep> table = {
      {1, 3705, 90, false, "0",
       "Select a log by date. The most updated log will be shown initially."},
      {2, 5805, 120, false, "0",
       "Press this key to show the most updated list. Enables to select even newer list if any.It "
       "is always required to manually operate this key for updating the list anyway."},
      {3, 1830, 1080, false, "0",
       "Click the title bar of each column to sort the data. Drug the space line to change the "
       "width of columns."},
      {4, 2370, 1080, false, "0", "Click PIC to sort O=available X=unavailable."},
      {5, 5550, 1090, false, "0", "Click DEPT/DEST to sort the data by airport codes."},
      {6, 870, 1090, false, "1", "Click Equipment to sort by the type of equipment."},
      {7, 3150, 1845, false, "0",
       "Click on the line you wish to edit. All available data will be displayed on the relative "
       "editor below the list and ready for editing. Be advised that the list you are seeing "
       "refers to the log, not the actual current status. Please allow a few second to show all "
       "the data on the editors."},
      {8, 510, 3075, true, "2",
       "This is to edit the images and registration numbers of the equipment. Click on the image "
       "to open the image editing software. Be sure to have noimage.jpg sumbnail in the PICS "
       "folder to correctly function this editor."},
      {9, 1965, 2760, true, "2", ""},
      {10, 1320, 570, true, "2",
       "Shows the current data described in the AIRCRAFT.CSV file. Use this space to write or "
       "modify the type of equipment and click [Ent] to update it."},
      {11, 3450, 3120, true, "2", "Shows the current data described in the FLIGHT.CSV file."},
      {12, 3840, 1560, true, "2",
       "Use this space to write or modify the airport code of departure and click [Ent] to update "
       "it. Use code search on the right by entering key words such as 3-letter airport code or a "
       "name of place."},
      {13, 3810, 1065, true, "2",
       "Use this space to write or modify the airport code of destination and click [Ent] to "
       "update it. Use code search on the right by entering key words such as 3-letter airport "
       "code or a name of place."},
      {14, 7215, 2850, true, "2",
       "Enter key words such as 3-letter airport code or a name of place here to see the "
       "candidates below."},
      {15, 7110, 2460, true, "2", "Select appropreate airport name and click [<] key."},
      {16, 6510, 1515, true, "2",
       "Press this key to transfer the data to DEPT/DEST box on the left."},
      {17, 6255, 645, true, "2", "Press [Ent] to write the edited data to FLIGHT.CSV file."},
      {18, 3930, 2745, true, "2", "Select Search engine."},
      {19, 5055, 2745, true, "2", ""},
      {20, 4635, 2460, true, "3",
       "This indicates the search result of LETTER.CSV for the airline codes refering the first 2 "
       "letters of flight received by QZ-ACARS. Edit it here if necessary."},
      {21, 4635, 2085, true, "3",
       "Edit it here with 2 or 3 letter codes and airline's name. You may need to manually edit "
       "LETTER.CSV to meet correct functions of QZ-ACARS, as not all airlines operate ACARS with "
       "their designated ICAO/IATA codes."},
      {22, -1, 15, true, "12",
       "You may change the size of the window or show full-size. It automatically fits the size of "
       "the list accordingly to the size of the window."},
      {23, 1830, 660, false, "0", "The Flight-number filled in is retrieved."},
      {24, 5445, 690, false, "0", "The DEPT/DEST filled in is retrieved."},
      {25, 4335, 660, false, "1", "Time filled in is retrieved."},
      {26, 6285, 660, false, "1", "Clear all filter."},
      {27, 5565, 630, false, "1", "The retrieval result is displayed."},
      {28, 4620, 1380, true, "3",
       "Edit it here with 4 letter codes and airport's name. Click [Ent] to update it."},
      {29, -1, -1, false, "", ""},
  };
  return table;
}

/// True for a text of characters that every Japanese font of the desktop has.
bool fitsCodePage932(const std::string& text) {
  return Encoding::codePage932().encode(text).has_value();
}

std::vector<std::string> textLines(const std::string& text) {
  std::vector<std::string> lines;
  std::size_t from = 0;
  for (std::size_t at = text.find("\r\n"); at != std::string::npos; at = text.find("\r\n", from)) {
    lines.push_back(text.substr(from, at - from));
    from = at + 2;
  }
  lines.push_back(text.substr(from));
  return lines;
}

TEST(TourSteps, HasTwentyNineStepsAndNoOther) {
  for (int number = 1; number <= 29; ++number) EXPECT_NE(tourStep(number), nullptr) << number;
  for (const int number : {-1, 0, 30, 31, 1000}) {
    EXPECT_EQ(tourStep(number), nullptr) << number;
    EXPECT_EQ(shownText(number), "") << number;
  }
}

TEST(TourSteps, EveryStepHasItsPlaceItsPointersAndItsEnglishText) {
  ASSERT_EQ(expectedSteps().size(), 29U);
  for (const ExpectedStep& expected : expectedSteps()) {
    SCOPED_TRACE(expected.number);
    const TourStep* step = tourStep(expected.number);
    ASSERT_NE(step, nullptr);
    if (expected.left >= 0) {
      EXPECT_EQ(step->place, TourPlace::offsets);
      EXPECT_EQ(step->left, expected.left);
    }
    if (expected.top >= 0) {
      EXPECT_EQ(step->top, expected.top);
    }
    EXPECT_EQ(step->panel, expected.panel);
    std::string pointers;
    for (std::size_t i = 0; i < step->pointers.size(); ++i) {
      if (step->pointers[i]) pointers += std::to_string(i);
    }
    EXPECT_EQ(pointers, expected.pointers);
    if (!expected.english.empty()) {
      EXPECT_EQ(step->english, expected.english);
    }
  }
}

TEST(TourSteps, StepTwentyTwoStandsRightOfTheWindowAndTheLastOneInItsMiddle) {
  EXPECT_EQ(tourStep(22)->place, TourPlace::rightOfWindow);
  EXPECT_EQ(tourStep(22)->left, 100);
  EXPECT_EQ(tourStep(29)->place, TourPlace::centred);
  EXPECT_FALSE(tourStep(29)->panel);
}

TEST(TourSteps, StepsNineAndNineteenExplainTheSearchAndEndWithARightsNotice) {
  EXPECT_EQ(tourStep(9)->english,
            "Click Search key to link to the photo service and search for the equipment "
            "automatically. A small manual adjustment such as B1234/B-1234 or VNA123/V-NA123 may "
            "be needed to obtain the right images. All images belong to their owners. Please "
            "respect their rights.");
  EXPECT_EQ(tourStep(19)->english,
            "Press Search key to search for the flight details on the flight status service's "
            "site. All information there belongs to its owners. Please respect their rights.");
}

TEST(TourSteps, TheLastStepThanksEveryoneInGeneralWords) {
  EXPECT_EQ(shownText(29),
            "Many thanks to everyone who tests this program, reports what goes wrong and shares "
            "logs.\r\n\r\n"
            "　このプログラムを試してくださる方、不具合を知らせてくださる方、\r\n"
            "　ログを提供してくださる方、すべての皆様に心より感謝いたします。");
}

TEST(TourSteps, ShowsTheEnglishTextThenTheJapaneseLines) {
  EXPECT_EQ(shownText(1),
            "Select a log by date. The most updated log will be shown initially.\r\n\r\n"
            "　日付を選んでログを開きます。\r\n"
            "　最初は最も新しいログが表示されます。");
}

TEST(TourSteps, EveryJapaneseVersionHasTwoOrThreeLinesEachAfterAnIdeographicSpace) {
  for (int number = 1; number <= 29; ++number) {
    SCOPED_TRACE(number);
    const std::vector<std::string> lines = textLines(shownText(number));
    ASSERT_GE(lines.size(), 4U);
    ASSERT_LE(lines.size(), 5U);
    EXPECT_EQ(lines[0], tourStep(number)->english);
    EXPECT_TRUE(isAscii(lines[0]));
    EXPECT_EQ(lines[1], "");
    for (std::size_t i = 2; i < lines.size(); ++i) {
      EXPECT_THAT(lines[i], StartsWith("\u3000"));
      EXPECT_FALSE(isAscii(lines[i].substr(3)));
      EXPECT_TRUE(fitsCodePage932(lines[i])) << lines[i];
    }
  }
}

TEST(TourSteps, TheJapaneseVersionNamesTheSameFilesAndKeysAsTheEnglishOne) {
  for (const char* word :
       {"noimage.jpg", "AIRCRAFT.CSV", "FLIGHT.CSV", "LETTER.CSV", "[Ent]", "[<]", "QZ-ACARS",
        "DEPT/DEST", "B1234/B-1234", "VNA123/V-NA123", "ICAO/IATA", "Search key"}) {
    const std::string english = word;
    const std::string japanese = english == "Search key" ? "Search キー" : english;
    int found = 0;
    for (int number = 1; number <= 29; ++number) {
      if (tourStep(number)->english.find(english) == std::string_view::npos) continue;
      ++found;
      std::string lines;
      for (const std::string_view line : tourStep(number)->japanese) lines += line;
      EXPECT_THAT(lines, HasSubstr(japanese)) << number;
    }
    EXPECT_GT(found, 0) << word;
  }
}

std::string targetsText(int number) {
  std::string text;
  for (const TourTarget& target : tourStep(number)->targets) {
    if (!text.empty()) text += " ";
    switch (target.kind) {
      case TourTargetKind::control:
        text += target.name;
        break;
      case TourTargetKind::columnTitle:
        text += std::string(target.name) + " title " + std::to_string(target.column);
        break;
      case TourTargetKind::listRows:
        text += std::string(target.name) + " rows";
        break;
      case TourTargetKind::window:
        text += "window";
        break;
    }
  }
  return text;
}

TEST(TourSteps, EveryStepNamesTheControlsThatItExplains) {
  const std::vector<std::string> expected = {
      "Combo1",
      "Command5",
      "xLView1 title 1",
      "xLView1 title 2",
      "xLView1 title 4 xLView1 title 5",
      "xLView1 title 6",
      "xLView1 rows",
      "Image1",
      "Command7(0)",
      "Text1",
      "Frame2",
      "Text2(0)",
      "Text2(1)",
      "Text3",
      "List1",
      "Command3(0) Command3(1)",
      "Command2",
      "Combo3",
      "Command7(1)",
      "Frame3",
      "Text2(3) Text2(4)",
      "window",
      "Text4(0)",
      "Text4(2)",
      "Text4(6)",
      "Command9",
      "Label3",
      "Text2(5) Text2(6)",
      "",
  };
  for (int number = 1; number <= 29; ++number) {
    EXPECT_EQ(targetsText(number), expected[static_cast<std::size_t>(number - 1)]) << number;
  }
}

}  // namespace
}  // namespace vel
