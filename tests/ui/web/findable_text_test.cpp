#include "web/ui/findable_text.h"

#include <QAbstractButton>

#include "tests/ui/web/web_fixture.h"

namespace vel {
namespace {

using test::rawLine;

class FindTest : public test::WebWindowTest {
 protected:
  void SetUp() override {
    makeProgram();
    writeRawLog("JA8089", test::cp932Lines({rawLine("HDR", "POS1 羽田"), rawLine("HDR", "ENGINE"),
                                            rawLine("HDR", "pos2")}));
    open("JA8089");
    area_ = control<FindableText>("Text1");
  }
  void openBar() {
    QTest::keyClick(viewer(), Qt::Key_F, Qt::ControlModifier);
    ASSERT_TRUE(bar()->isVisible());
  }
  void type(const QString& words) { QTest::keyClicks(box(), words); }
  /// The selected text with the character after it.
  [[nodiscard]] std::string found() const {
    QTextCursor cursor = area_->textCursor();
    const int end = cursor.selectionEnd();
    cursor.setPosition(cursor.selectionStart());
    cursor.setPosition(qMin(end + 1, static_cast<int>(area_->toPlainText().size())),
                       QTextCursor::KeepAnchor);
    return selected().empty() ? std::string() : cursor.selectedText().toStdString();
  }
  [[nodiscard]] std::string selected() const {
    return area_->textCursor().selectedText().toStdString();
  }
  [[nodiscard]] QWidget* bar() const { return control<QWidget>("Frame2"); }
  [[nodiscard]] QLineEdit* box() const { return control<QLineEdit>("Text2"); }
  [[nodiscard]] std::string outcome() const {
    return control<QLabel>("Label2")->text().toStdString();
  }

  FindableText* area_ = nullptr;
};

TEST_F(FindTest, CtrlFOpensTheBarAndTypingFinds) {
  EXPECT_FALSE(bar()->isVisible());
  openBar();
  EXPECT_TRUE(box()->hasFocus());
  type(QStringLiteral("pos"));
  EXPECT_EQ(found(), "POS1");
  EXPECT_EQ(outcome(), "");
}

TEST_F(FindTest, F3GoesOnAndShiftF3GoesBackAroundTheEnds) {
  openBar();
  type(QStringLiteral("pos"));
  QTest::keyClick(viewer(), Qt::Key_F3);
  EXPECT_EQ(found(), "pos2");
  QTest::keyClick(viewer(), Qt::Key_F3);
  EXPECT_EQ(found(), "POS1");
  EXPECT_EQ(outcome(), "Went on from the beginning. 先頭から検索しました。");
  QTest::keyClick(viewer(), Qt::Key_F3, Qt::ShiftModifier);
  EXPECT_EQ(found(), "pos2");
  EXPECT_EQ(outcome(), "Went on from the end. 末尾から検索しました。");
  QTest::keyClick(viewer(), Qt::Key_F3, Qt::ShiftModifier);
  EXPECT_EQ(found(), "POS1");
  EXPECT_EQ(outcome(), "");
}

TEST_F(FindTest, EnterAndTheArrowsGoOnToo) {
  openBar();
  type(QStringLiteral("pos"));
  QTest::keyClick(box(), Qt::Key_Return);
  EXPECT_EQ(found(), "pos2");
  QTest::keyClick(box(), Qt::Key_Return, Qt::ShiftModifier);
  EXPECT_EQ(found(), "POS1");
  QTest::mouseClick(control<QAbstractButton>("Command5"), Qt::LeftButton);
  EXPECT_EQ(found(), "pos2");
  QTest::mouseClick(control<QAbstractButton>("Command4"), Qt::LeftButton);
  EXPECT_EQ(found(), "POS1");
}

TEST_F(FindTest, JapaneseTextIsFound) {
  openBar();
  box()->setText(QStringLiteral("羽田"));
  EXPECT_EQ(selected(), "羽田");
}

TEST_F(FindTest, ATextThatIsNotThereIsSaid) {
  openBar();
  type(QStringLiteral("POSX"));
  EXPECT_EQ(outcome(), "Not found. 見つかりません。");
}

TEST_F(FindTest, EscClosesTheBarAndKeepsThePlace) {
  openBar();
  type(QStringLiteral("engine"));
  QTest::keyClick(viewer(), Qt::Key_Escape);
  EXPECT_FALSE(bar()->isVisible());
  EXPECT_TRUE(viewer()->isVisible());
  EXPECT_TRUE(area_->hasFocus());
  EXPECT_EQ(selected(), "ENGINE");
  QTest::keyClick(viewer(), Qt::Key_F3);
  EXPECT_EQ(selected(), "ENGINE");
  QTest::keyClick(viewer(), Qt::Key_Escape);
  EXPECT_TRUE(viewer()->isVisible());
}

TEST_F(FindTest, F3WithoutATextOpensTheBar) {
  QTest::keyClick(viewer(), Qt::Key_F3);
  EXPECT_TRUE(bar()->isVisible());
}

TEST_F(FindTest, TheBarStandsWithinTheTextAreaAboveTheText) {
  const QSize before = area_->size();
  openBar();
  EXPECT_EQ(area_->size(), before);
  EXPECT_GT(bar()->height(), 20);
  EXPECT_GE(area_->viewport()->y(), bar()->geometry().bottom());
  QTest::keyClick(viewer(), Qt::Key_Escape);
  EXPECT_LT(area_->viewport()->y(), 5);
}

TEST_F(FindTest, SelectedTextGoesIntoTheBar) {
  area_->setTextCursor(area_->document()->find(QStringLiteral("ENGINE")));
  openBar();
  EXPECT_EQ(box()->text().toStdString(), "ENGINE");
}

}  // namespace
}  // namespace vel
