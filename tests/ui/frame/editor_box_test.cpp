// Boxes hand out whole values or none.

#include "core/ui/editor_box.h"

#include <QApplication>
#include <QClipboard>
#include <QTest>

#include <gtest/gtest.h>

namespace vel {
namespace {

class EditorBoxTest : public testing::Test {
 protected:
  void SetUp() override {
    box_.setToolTip(QStringLiteral("Flight remark"));
    box_.show();
    box_.setFocus();
  }

  EditorBox box_{nullptr};
};

TEST_F(EditorBoxTest, AValueThatFitsIsEditedAsItIs) {
  const QString value(kLongestEdited, QLatin1Char('x'));
  box_.setValue(value);
  EXPECT_EQ(box_.value(), value);
  EXPECT_FALSE(box_.isReadOnly());
  EXPECT_EQ(box_.cursorPosition(), 0);
  QTest::keyClick(&box_, Qt::Key_Delete);
  EXPECT_EQ(box_.value(), value.mid(1));
}

TEST_F(EditorBoxTest, ALongerOneIsHandedOutWholeAndOnlyDeleted) {
  for (const int length : {kLongestEdited + 1, 32'767, 32'768, 900'000}) {
    const QString value = QStringLiteral("begin") + QString(length, QChar(0x6771));
    for (const Qt::Key deletes : {Qt::Key_Delete, Qt::Key_Backspace}) {
      box_.setValue(value);
      EXPECT_EQ(box_.value(), value);
      EXPECT_TRUE(box_.text().startsWith(QStringLiteral("begin")));
      EXPECT_LE(box_.text().size(), kLongestEdited);
      QTest::keyClicks(&box_, QStringLiteral("typed"));
      EXPECT_EQ(box_.value(), value);
      EXPECT_TRUE(box_.toolTip().contains(QString::number(value.size())));
      QTest::keyClick(&box_, deletes);
      EXPECT_EQ(box_.value(), QString());
      QTest::keyClicks(&box_, QStringLiteral("typed"));
      EXPECT_EQ(box_.value(), QStringLiteral("typed"));
      EXPECT_EQ(box_.toolTip(), QStringLiteral("Flight remark"));
    }
  }
}

TEST_F(EditorBoxTest, AnotherValueTakesItsPlace) {
  const QString value(900'000, QLatin1Char('x'));
  box_.setValue(value);
  box_.setValue(QStringLiteral("short"));
  EXPECT_EQ(box_.value(), QStringLiteral("short"));
  EXPECT_FALSE(box_.isReadOnly());
  box_.setValue(value);
  box_.clear();
  EXPECT_EQ(box_.value(), QString());
  EXPECT_FALSE(box_.isReadOnly());
}

TEST_F(EditorBoxTest, ATextThatIsTooLongIsNotPastedInPart) {
  box_.setValue(QStringLiteral("before"));
  QGuiApplication::clipboard()->setText(QString(kLongestEdited, QLatin1Char('x')));
  QTest::keyClick(&box_, Qt::Key_V, Qt::ControlModifier);
  EXPECT_TRUE(QTest::qWaitFor([this] { return box_.value() == QStringLiteral("before"); }));
  QGuiApplication::clipboard()->setText(QString(kLongestEdited - 6, QLatin1Char('x')));
  QTest::keyClick(&box_, Qt::Key_V, Qt::ControlModifier);
  QCoreApplication::processEvents();
  EXPECT_EQ(box_.value().size(), kLongestEdited);
}

}  // namespace
}  // namespace vel
