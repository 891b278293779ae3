#include "web/ui/photo_pane.h"

#include <QImage>
#include <QImageWriter>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

#include "tests/ui/support/test_station.h"

namespace vel {
namespace {

class PhotoPaneTest : public testing::Test {
 protected:
  void SetUp() override {
    station_.use();
    save("noimage.jpg", QSize(40, 30), Qt::gray);
    pane_ = std::make_unique<PhotoPane>(
        station_.context(), 0, photoEngines(SearchWindow::acars, station_.settings), nullptr);
    pane_->resize(200, 200);
    pane_->show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(pane_.get()));
  }
  [[nodiscard]] std::filesystem::path photo(const char* name) const {
    return station_.base.folders.pics / name;
  }
  void save(const char* name, QSize size, QColor colour) const {
    QImage image(size, QImage::Format_RGB32);
    image.fill(colour);
    ASSERT_TRUE(image.save(QString::fromStdString(photo(name).string()), "JPEG"));
  }
  void show(const std::string& registration) const {
    pane_->showPhoto(registration);
    test::finishJobs();
  }
  [[nodiscard]] std::string size() const {
    return test::control<QLabel>(*pane_, "Label1").text().toStdString();
  }
  [[nodiscard]] QSize shown() const { return pane_->photo()->pictureSize(); }
  [[nodiscard]] QColor middle() const {
    return pane_->photo()->grab().toImage().pixelColor(pane_->photo()->rect().center());
  }

  test::TestStation station_;
  std::unique_ptr<PhotoPane> pane_;
};

TEST_F(PhotoPaneTest, SaysWhatToDoWhereThereIsNeitherAPhotoNorAPlaceholder) {
  std::filesystem::remove(photo("noimage.jpg"));
  show("JA8089");
  EXPECT_EQ(pane_->photo()->hint().toStdString(),
            "No photo 写真なし\nSearch, then save it as\n検索して保存:\npics/JA8089.jpg");
  const QImage hinted = pane_->photo()->grab().toImage();
  pane_->clear();
  EXPECT_NE(pane_->photo()->grab().toImage(), hinted);
}

TEST_F(PhotoPaneTest, ShowsThePhotoWithItsSizeAndTellsItToScreenReaders) {
  save("JA8089.jpg", QSize(300, 200), Qt::red);
  show("JA8089");
  EXPECT_EQ(size(), "300 x 200");
  EXPECT_EQ(test::control<QLabel>(*pane_, "Label1").accessibleDescription().toStdString(),
            "300 x 200");
  EXPECT_EQ(shown(), QSize(300, 200));
  EXPECT_GT(middle().red(), 230);
  EXPECT_LT(middle().green(), 40);
}

TEST_F(PhotoPaneTest, OfATooLargePhotoTheSizeIsShownBesideNoimage) {
  save("JA8089.jpg", QSize(300, 200), Qt::red);
  std::string bytes = test::readBytes(photo("JA8089.jpg"));
  const std::size_t frame = bytes.find("\xFF\xC0");
  ASSERT_NE(frame, std::string::npos);
  bytes.replace(frame + 5, 4, "\x4E\x20\x4E\x20");  // 20000 by 20000
  test::writeBytes(photo("JA8089.jpg"), bytes);
  show("JA8089");
  EXPECT_EQ(size(), "20000 x 20000");
  EXPECT_EQ(shown(), QSize(40, 30));
}

TEST_F(PhotoPaneTest, ADamagedPhotoIsNone) {
  save("JA8089.jpg", QSize(300, 200), Qt::red);
  std::string bytes = test::readBytes(photo("JA8089.jpg"));
  bytes.resize(bytes.size() * 3 / 4);
  test::writeBytes(photo("JA8089.jpg"), bytes);
  show("JA8089");
  EXPECT_EQ(size(), "");
  EXPECT_EQ(shown(), QSize(40, 30));
}

TEST_F(PhotoPaneTest, ALargePhotoLeavesTheWindowAlive) {
  // Noise takes a reader its time.
  QImage noise(6000, 5000, QImage::Format_Grayscale8);
  unsigned grain = 1;
  for (int y = 0; y < noise.height(); ++y) {
    uchar* const line = noise.scanLine(y);
    for (int x = 0; x < noise.width(); ++x) {
      grain = grain * 1664525U + 1013904223U;
      line[x] = static_cast<uchar>(grain >> 24);
    }
  }
  ASSERT_TRUE(noise.save(QString::fromStdString(photo("JA8089.jpg").string()), "JPEG"));
  int ticks = 0;
  QTimer ticking;
  QObject::connect(&ticking, &QTimer::timeout, [&ticks] { ++ticks; });
  ticking.start(0);
  pane_->showPhoto("JA8089");
  EXPECT_EQ(size(), "");
  test::finishJobs();
  EXPECT_EQ(size(), "6000 x 5000");
  EXPECT_GE(ticks, 3);
}

TEST_F(PhotoPaneTest, TheLastPhotoAskedForIsTheOneThatIsShown) {
  save("JA8089.jpg", QSize(3000, 2000), Qt::red);
  save("JA1.jpg", QSize(150, 100), Qt::blue);
  pane_->showPhoto("JA8089");
  QCoreApplication::processEvents();
  show("JA1");
  EXPECT_EQ(size(), "150 x 100");
  EXPECT_EQ(shown(), QSize(150, 100));
}

TEST_F(PhotoPaneTest, ClearedInTheMiddleItStaysEmpty) {
  save("JA8089.jpg", QSize(3000, 2000), Qt::red);
  pane_->showPhoto("JA8089");
  QCoreApplication::processEvents();
  pane_->clear();
  test::finishJobs();
  EXPECT_EQ(size(), "");
  EXPECT_FALSE(shown().isValid());
}

TEST_F(PhotoPaneTest, TheFocusDrawsAFrameAndLeavesTheColoursAlone) {
  save("JA8089.jpg", QSize(300, 200), Qt::white);
  show("JA8089");
  auto* photo = pane_->photo();
  photo->clearFocus();
  const QImage without = photo->grab().toImage();
  photo->setFocus();
  ASSERT_TRUE(photo->hasFocus());
  const QImage with = photo->grab().toImage();
  const QRect inside = photo->rect().adjusted(3, 3, -3, -3);
  EXPECT_EQ(with.copy(inside), without.copy(inside));
  EXPECT_NE(with.pixel(1, photo->height() / 2), without.pixel(1, photo->height() / 2));
  EXPECT_NE(with.pixel(photo->width() / 2, 1), without.pixel(photo->width() / 2, 1));
}

TEST_F(PhotoPaneTest, SaysWhereAPhotoBelongsWhereNothingElseCanBeShown) {
  std::filesystem::remove(photo("noimage.jpg"));
  show("JA<b>1");
  const std::string hint = pane_->photo()->hint().toStdString();
  EXPECT_NE(hint.find("pics/JA<b>1.jpg"), std::string::npos) << hint;
  EXPECT_NE(hint.find("写真なし"), std::string::npos) << hint;
  const QImage hinted = pane_->photo()->grab().toImage();
  pane_->clear();
  EXPECT_EQ(pane_->photo()->hint(), QString());
  EXPECT_NE(pane_->photo()->grab().toImage(), hinted);
}

}  // namespace
}  // namespace vel
