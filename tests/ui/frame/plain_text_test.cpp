// What strangers wrote, as windows show it.

#include "core/ui/plain_text.h"

#include <QFontMetrics>
#include <QLabel>
#include <QMessageBox>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

#include "core/ui/qt_desktop.h"

namespace vel {
namespace {

constexpr QChar kBreakHere(0x200B);

TEST(PlainMessage, KeepsLinesAndAddsPlacesToBreakAt) {
  EXPECT_EQ(plainMessage("ERROR #9\r\n\r\nFLIGHT.csv, line 3"),
            QStringLiteral("ERROR #9\n\nFLIGHT.csv, line 3"));
  const QString shown = plainMessage("Error line:" + std::string(200, 'x'));
  EXPECT_EQ(QString(shown).remove(kBreakHere).toStdString(), "Error line:" + std::string(200, 'x'));
  for (const QString& piece : shown.split(kBreakHere)) EXPECT_LE(piece.size(), 52);
}

TEST(PlainMessage, BreaksALongListOfNumbersBehindItsCommas) {
  std::string numbers;
  for (int line = 10'000; line < 10'400; ++line) numbers += std::to_string(line) + ",";
  const QString shown = plainMessage("Error line:" + numbers);
  EXPECT_EQ(QString(shown).remove(kBreakHere).toStdString(), "Error line:" + numbers);
  const QStringList pieces = shown.split(kBreakHere);
  EXPECT_GT(pieces.size(), 50);
  for (const QString& piece : pieces) {
    EXPECT_TRUE(piece.isEmpty() || piece.endsWith(QLatin1Char(','))) << piece.toStdString();
  }
}

TEST(PlainMessage, NothingInItIsMarkup) {
  const QString shown = plainMessage("<b>a</b> &amp; \x01");
  EXPECT_EQ(shown, QStringLiteral("<b>a</b> &amp; \u2401"));
}

/// The report of a log with thousands of malformed lines, in a real box.
TEST(MessageBox, AReportWithALongListOfNumbersIsWhollyInSight) {
  std::string numbers;
  for (int line = 10'000; line < 10'150; ++line) numbers += std::to_string(line) + ",";
  bool looked = false;
  QTimer look;
  look.setInterval(5);
  QObject::connect(&look, &QTimer::timeout, &look, [&] {
    auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    if (box == nullptr || !box->isVisible()) return;
    look.stop();
    looked = true;
    const auto* text = box->findChild<QLabel*>(QStringLiteral("qt_msgbox_label"));
    ASSERT_NE(text, nullptr);
    EXPECT_TRUE(box->rect().contains(text->geometry()));
    const QRect needed = QFontMetrics(text->font())
                             .boundingRect(QRect(0, 0, text->contentsRect().width(), 100'000),
                                           Qt::TextWordWrap, text->text());
    EXPECT_LE(needed.width(), text->contentsRect().width());
    EXPECT_LE(needed.height(), text->contentsRect().height());
    EXPECT_LT(box->width(), 1000);
    QTest::keyClick(box, Qt::Key_Return);
  });
  look.start();
  QtDesktop desktop;
  desktop.showMessage("Error line:" + numbers);
  EXPECT_TRUE(looked);
}

}  // namespace
}  // namespace vel
