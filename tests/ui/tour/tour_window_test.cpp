#include "tour/ui/tour_window.h"

#include <QApplication>
#include <QScreen>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTest>
#include <algorithm>
#include <cmath>
#include <memory>

#include <gtest/gtest.h>

#include "tests/ui/tour/fake_host.h"
#include "tests/ui/tour/tour_geometry.h"

namespace vel {
namespace {

using test::distance;
using test::edgeOf;
using test::edgesOf;
using test::FakeHost;
using test::pointsAt;

class TourWindowTest : public testing::Test {
 protected:
  void open() {
    tour_ = std::make_unique<TourWindow>(host_, state_);
    tour_->open();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(tour_.get()));
  }
  void openAt(int step) {
    state_.step = step;
    open();
  }

  template <typename T>
  T* child(const char* name) const {
    T* found = tour_->findChild<T*>(QString::fromLatin1(name));
    EXPECT_NE(found, nullptr) << name;
    return found;
  }
  QPushButton* previous() const { return child<QPushButton>("Command1"); }
  QPushButton* next() const { return child<QPushButton>("Command2"); }
  QPushButton* closeButton() const { return child<QPushButton>("Command3"); }
  QLabel* label() const { return child<QLabel>("Label1"); }
  QTimer* timer() const { return child<QTimer>("Timer1"); }
  PointerPicture* picture(int i) const {
    return child<PointerPicture>(qPrintable(QStringLiteral("Image1(%1)").arg(i)));
  }
  static void press(QPushButton* button) { QTest::mouseClick(button, Qt::LeftButton); }

  [[nodiscard]] std::string text() const {
    return child<QPlainTextEdit>("Text1")->toPlainText().toStdString();
  }
  static std::string expectedText(int step) {
    return QString::fromStdString(shownText(step))
        .replace(QStringLiteral("\r\n"), QStringLiteral("\n"))
        .toStdString();
  }

  /// The numbers of the visible pointers: "12".
  [[nodiscard]] std::string visiblePictures() const {
    std::string numbers;
    for (int i = 0; i < 4; ++i) {
      if (picture(i)->isVisible()) numbers += std::to_string(i);
    }
    return numbers;
  }

  [[nodiscard]] QList<ControlFrame*> frames() const {
    QList<ControlFrame*> visible;
    for (ControlFrame* frame : host_.findChildren<ControlFrame*>()) {
      if (frame->isVisible()) visible.append(frame);
    }
    return visible;
  }

  FakeHost host_;
  TourState state_;
  std::unique_ptr<TourWindow> tour_;
};

QPoint expectedCorner(int step, const FakeHost& host, const TourWindow& tour) {
  const TourStep& s = *tourStep(step);
  const QRect main = host.frameGeometry();
  const double panel = s.panel ? main.height() - 3630 / 15.0 : 0;
  QPoint corner(main.x() + static_cast<int>(std::lround(s.left / 15.0)),
                main.y() + static_cast<int>(std::lround(s.top / 15.0 + panel)));
  const QSize size = tour.frameGeometry().size();
  if (step == 22) corner.setX(main.x() + main.width() + 7);
  if (step == 29) {
    corner = main.topLeft() +
             QPoint((main.width() - size.width()) / 2, (main.height() - size.height()) / 2);
  }
  const QRect screen = host.screen()->availableGeometry();
  corner.setX(std::clamp(corner.x(), screen.x(), screen.x() + screen.width() - size.width()));
  corner.setY(std::clamp(corner.y(), screen.y(), screen.y() + screen.height() - size.height()));
  return corner;
}

TEST_F(TourWindowTest, IsASmallModalWindowWithItsButtonsAndABlinkOfHalfASecond) {
  open();
  EXPECT_EQ(tour_->windowTitle(), QStringLiteral("Tour"));
  EXPECT_TRUE(tour_->isModal());
  EXPECT_EQ(tour_->windowModality(), Qt::WindowModal);
  EXPECT_EQ(tour_->parentWidget(), &host_);
  EXPECT_EQ(previous()->text(), QStringLiteral("Prev."));
  EXPECT_EQ(next()->text(), QStringLiteral("Next"));
  EXPECT_EQ(closeButton()->text(), QStringLiteral("Close"));
  EXPECT_TRUE(child<QPlainTextEdit>("Text1")->isReadOnly());
  EXPECT_EQ(timer()->interval(), 500);
  EXPECT_TRUE(timer()->isActive());
  EXPECT_LE(tour_->frameGeometry().width(), 4300 / 15);
  EXPECT_LE(tour_->height(), 1900 / 15 + 1);
}

TEST_F(TourWindowTest, WalksAllTwentyNineStepsBesideEachControlFramingAndPointingAtIt) {
  open();
  for (int step = 1; step <= 29; ++step) {
    SCOPED_TRACE(step);
    ASSERT_EQ(state_.step, step);
    EXPECT_EQ(text(), expectedText(step));
    EXPECT_EQ(tour_->pos(), expectedCorner(step, host_, *tour_));
    EXPECT_TRUE(host_.screen()->availableGeometry().contains(tour_->frameGeometry()));

    const QList<QRect> controls = host_.controlsOf(step);
    ASSERT_EQ(controls.size(), static_cast<qsizetype>(tourStep(step)->targets.size()));
    if (step != 22) {
      for (const QRect& control : controls) {
        EXPECT_FALSE(tour_->frameGeometry().intersects(control));
      }
    }

    ASSERT_EQ(frames().size(), controls.size());
    for (qsizetype i = 0; i < controls.size(); ++i) {
      const QRect frame(frames()[i]->mapToGlobal(QPoint(0, 0)), frames()[i]->size());
      EXPECT_TRUE(frame.contains(controls[i]));
      EXPECT_TRUE(controls[i].adjusted(-5, -5, 5, 5).contains(frame));
    }

    std::string shown;
    for (int i = 0; i < 4; ++i) {
      if (!tourStep(step)->pointers[static_cast<std::size_t>(i)]) continue;
      shown += std::to_string(i);
      SCOPED_TRACE(i);
      const int edge = edgeOf(picture(i));
      ASSERT_NE(edge, -1);
      EXPECT_TRUE(tour_->rect().contains(picture(i)->geometry()));
      EXPECT_TRUE(std::any_of(controls.begin(), controls.end(),
                              [&](const QRect& control) { return pointsAt(picture(i), control); }));
      if (step != 22) {
        const QList<QRect> edges = edgesOf(tour_->geometry());
        double chosen = 1e9;
        double nearest = 1e9;
        for (const QRect& control : controls) {
          chosen = std::min(chosen, distance(edges[edge], control));
          nearest = std::min(nearest, distance(tour_->geometry(), control));
        }
        EXPECT_LE(chosen, nearest + 1);
      }
      for (const char* name : {"Text1", "Label1", "Command1", "Command2", "Command3"}) {
        EXPECT_FALSE(picture(i)->geometry().intersects(child<QWidget>(name)->geometry())) << name;
      }
    }
    EXPECT_EQ(visiblePictures(), shown);
    press(next());
  }
  EXPECT_FALSE(tour_->isVisible());
}

TEST_F(TourWindowTest, ThePointersOfStepTwentyTwoStandSideBySideAndPointAtTheWindow) {
  openAt(22);
  EXPECT_EQ(visiblePictures(), "12");
  EXPECT_EQ(edgeOf(picture(1)), 0);
  EXPECT_EQ(edgeOf(picture(2)), 0);
  EXPECT_FALSE(picture(1)->geometry().intersects(picture(2)->geometry()));
  EXPECT_EQ(picture(1)->angle(), 180);
  EXPECT_EQ(picture(2)->angle(), 180);
}

TEST_F(TourWindowTest, PrevOnStepOneShowsStepTwentyNineCentredWithoutPointer) {
  open();
  press(previous());
  EXPECT_EQ(state_.step, 29);
  EXPECT_EQ(text(), expectedText(29));
  EXPECT_EQ(visiblePictures(), "");
  EXPECT_TRUE(frames().isEmpty());
  const QPoint off = tour_->frameGeometry().center() - host_.frameGeometry().center();
  EXPECT_LE(std::abs(off.x()), 1);
  EXPECT_LE(std::abs(off.y()), 1);
  press(previous());
  EXPECT_EQ(state_.step, 28);
  EXPECT_EQ(text(), expectedText(28));
}

TEST_F(TourWindowTest, NextOnStepTwentyNineClosesTheTourAndOpeningItAgainShowsStepOne) {
  openAt(29);
  QSignalSpy finished(tour_.get(), &QDialog::finished);
  press(next());
  EXPECT_FALSE(tour_->isVisible());
  EXPECT_EQ(finished.count(), 1);
  EXPECT_EQ(state_.step, 1);
  EXPECT_FALSE(timer()->isActive());

  tour_->open();
  EXPECT_TRUE(tour_->isVisible());
  EXPECT_EQ(text(), expectedText(1));
  tour_.reset();
  open();
  EXPECT_EQ(text(), expectedText(1));
}

TEST_F(TourWindowTest, ResumesAtTheStepWhereItWasLeft) {
  open();
  for (int i = 0; i < 6; ++i) press(next());
  press(closeButton());
  EXPECT_FALSE(tour_->isVisible());
  tour_.reset();
  EXPECT_EQ(state_.step, 7);
  open();
  EXPECT_EQ(text(), expectedText(7));
  EXPECT_EQ(tour_->pos(), expectedCorner(7, host_, *tour_));
}

TEST_F(TourWindowTest, ANumberThatIsNoStepChangesOnlyThePointers) {
  openAt(3);
  const QPoint corner = tour_->pos();
  state_.step = 40;
  press(previous());  // 39: no step either
  EXPECT_TRUE(tour_->isVisible());
  EXPECT_EQ(text(), expectedText(3));
  EXPECT_EQ(tour_->pos(), corner);
  EXPECT_EQ(visiblePictures(), "");
}

TEST_F(TourWindowTest, PointersAreVisibleOnEverySecondTickOnly) {
  openAt(22);
  EXPECT_EQ(visiblePictures(), "12");
  timer()->setInterval(20);
  QSignalSpy ticks(timer(), &QTimer::timeout);
  for (int tick = 1; tick <= 6; ++tick) {
    ASSERT_TRUE(ticks.wait(2000));
    ASSERT_EQ(ticks.count(), tick);
    EXPECT_EQ(visiblePictures(), tick % 2 == 0 ? "12" : "") << tick;
  }
}

TEST_F(TourWindowTest, ANewStepKeepsTheBlinkingInStep) {
  open();
  tour_->blink();
  EXPECT_EQ(visiblePictures(), "");
  press(next());
  EXPECT_EQ(visiblePictures(), "");
  tour_->blink();
  EXPECT_EQ(visiblePictures(), "0");
  tour_->blink();
  press(closeButton());
  tour_->open();
  EXPECT_EQ(visiblePictures(), "0");
}

TEST_F(TourWindowTest, IsDrivenByTheKeyboardAlone) {
  open();
  const auto key = [this](Qt::Key k, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QTest::keyClick(tour_->focusWidget(), k, modifiers);
  };
  ASSERT_NE(tour_->focusWidget(), nullptr);
  key(Qt::Key_N, Qt::AltModifier);
  EXPECT_EQ(state_.step, 2);
  key(Qt::Key_Right);
  EXPECT_EQ(state_.step, 3);
  key(Qt::Key_P, Qt::AltModifier);
  EXPECT_EQ(state_.step, 2);
  key(Qt::Key_Left);
  key(Qt::Key_Left);
  EXPECT_EQ(state_.step, 29);
  EXPECT_EQ(text(), expectedText(29));
  key(Qt::Key_Right);
  EXPECT_FALSE(tour_->isVisible());
  EXPECT_EQ(state_.step, 1);

  tour_->open();
  key(Qt::Key_Return);
  EXPECT_EQ(state_.step, 2);
  key(Qt::Key_Escape);
  EXPECT_FALSE(tour_->isVisible());
  EXPECT_EQ(state_.step, 2);
}

TEST_F(TourWindowTest, TheKeysWorkFromEveryControlOfTheTour) {
  open();
  for (const char* name : {"Text1", "Label1", "Command1", "Command2", "Command3"}) {
    SCOPED_TRACE(name);
    state_.step = 5;
    auto* widget = child<QWidget>(name);
    widget->setFocus();
    QTest::keyClick(widget, Qt::Key_Right);
    EXPECT_EQ(state_.step, 6);
    QTest::keyClick(widget, Qt::Key_N, Qt::AltModifier);
    EXPECT_EQ(state_.step, 7);
    QTest::keyClick(widget, Qt::Key_Left);
    EXPECT_EQ(state_.step, 6);
    QTest::keyClick(widget, Qt::Key_P, Qt::AltModifier);
    EXPECT_EQ(state_.step, 5);
  }
}

TEST_F(TourWindowTest, TheLongestTextScrollsByKeyToItsEndAndTheNextStepStartsAtTheTop) {
  openAt(7);
  // As large as it likes to be it needs no scrolling.
  EXPECT_EQ(child<QPlainTextEdit>("Text1")->verticalScrollBar()->maximum(), 0);
  tour_->resize(4230 / 15, 1900 / 15);
  QScrollBar* bar = child<QPlainTextEdit>("Text1")->verticalScrollBar();
  ASSERT_GT(bar->maximum(), 0);
  EXPECT_EQ(bar->value(), 0);
  QTest::keyClick(next(), Qt::Key_Down);
  EXPECT_GT(bar->value(), 0);
  for (int i = 0; i < 10; ++i) QTest::keyClick(next(), Qt::Key_PageDown);
  EXPECT_EQ(bar->value(), bar->maximum());
  QTest::keyClick(next(), Qt::Key_Up);
  EXPECT_LT(bar->value(), bar->maximum());
  press(next());
  EXPECT_EQ(bar->value(), 0);
}

TEST_F(TourWindowTest, TheNextButtonReportsThePositionThatItLeaves) {
  open();
  press(next());
  EXPECT_EQ(label()->text(), QStringLiteral("3705<-left top->90"));
  EXPECT_EQ(state_.step, 2);
  press(previous());
  EXPECT_EQ(label()->text(), QStringLiteral("3705<-left top->90"));
  const QPoint before = tour_->pos();
  host_.move(45, 30);
  ASSERT_TRUE(QTest::qWaitFor([&] { return tour_->pos() != before; }));
  press(next());
  EXPECT_EQ(label()->text(), QStringLiteral("3705<-left top->90"));
}

TEST_F(TourWindowTest, AClickOnTheLabelReportsStepAndPosition) {
  openAt(2);
  QTest::mouseClick(label(), Qt::LeftButton);
  EXPECT_EQ(label()->text(),
            QStringLiteral("P=2 Top=120 / Left=5805 / Form1+Frame4-Top=%1").arg(120 - 6870));
  tour_->move(host_.frameGeometry().topLeft() + QPoint(-10, 3));
  label()->setFocus();
  QTest::keyClick(label(), Qt::Key_Space);
  EXPECT_EQ(label()->text(),
            QStringLiteral("P=2 Top=45 / Left=-150 / Form1+Frame4-Top=%1").arg(45 - 6870));
}

TEST_F(TourWindowTest, StepsMarkedPanelFollowTheDetailPanelOfAResizedWindow) {
  openAt(17);
  const QPoint before = tour_->pos();
  host_.resizeOuter(840, 640);
  EXPECT_TRUE(QTest::qWaitFor([&] { return tour_->pos() == before - QPoint(0, 60); }));
  EXPECT_EQ(tour_->pos(), expectedCorner(17, host_, *tour_));
  const QRect control = host_.controlsOf(17)[0];
  ASSERT_EQ(frames().size(), 1);
  EXPECT_TRUE(QRect(frames()[0]->mapToGlobal(QPoint(0, 0)), frames()[0]->size()).contains(control));
  EXPECT_TRUE(pointsAt(picture(2), control));

  press(closeButton());
  state_.step = 1;
  tour_->open();
  const QPoint top = tour_->pos();
  host_.resizeOuter(840, 690);
  QCoreApplication::processEvents();
  EXPECT_EQ(tour_->pos(), top);
}

TEST_F(TourWindowTest, FollowsTheMainWindowWhenItIsMoved) {
  openAt(4);
  const QPoint before = tour_->pos();
  host_.move(host_.pos() + QPoint(60, 45));
  EXPECT_TRUE(QTest::qWaitFor([&] { return tour_->pos() == before + QPoint(60, 45); }));
}

TEST_F(TourWindowTest, ThePointerTurnsWhenTheTourWindowIsDraggedToTheOtherSide) {
  openAt(6);
  EXPECT_EQ(edgeOf(picture(1)), 2);
  tour_->move(host_.controlsOf(6)[0].right() + 40, tour_->y());
  EXPECT_EQ(edgeOf(picture(1)), 0);
  EXPECT_TRUE(pointsAt(picture(1), host_.controlsOf(6)[0]));
}

TEST_F(TourWindowTest, AHiddenControlGetsNoFrameAndThePointerStaysOnItsUsualSide) {
  host_.control(QStringLiteral("Command9"))->hide();
  openAt(26);
  EXPECT_TRUE(frames().isEmpty());
  EXPECT_EQ(visiblePictures(), "1");
  EXPECT_EQ(edgeOf(picture(1)), 2);
  EXPECT_EQ(picture(1)->angle(), 0);
  host_.control(QStringLiteral("Command9"))->show();
  tour_->blink();
  EXPECT_EQ(frames().size(), 1);
}

TEST_F(TourWindowTest, TheFrameIsColouredLetsTheMouseThroughAndMovesNothing) {
  QWidget* control = host_.control(QStringLiteral("Command9"));
  const QRect place = control->geometry();
  const QColor before = host_.grab().toImage().pixelColor(place.center().x(), place.top() - 3);
  openAt(26);
  EXPECT_EQ(control->geometry(), place);
  ASSERT_EQ(frames().size(), 1);
  const QColor colour = host_.grab().toImage().pixelColor(place.center().x(), place.top() - 3);
  EXPECT_NE(colour, before);
  EXPECT_EQ(colour, QColor(0xd8, 0x3b, 0x01));
  EXPECT_EQ(host_.childAt(place.center()), control);
  EXPECT_EQ(host_.childAt(QPoint(place.center().x(), place.top() - 3)), nullptr);
  press(closeButton());
  EXPECT_TRUE(frames().isEmpty());
  EXPECT_EQ(host_.grab().toImage().pixelColor(place.center().x(), place.top() - 3), before);
}

TEST_F(TourWindowTest, TheFrameGoesWithTheTour) {
  openAt(26);
  ASSERT_EQ(frames().size(), 1);
  tour_.reset();
  EXPECT_TRUE(host_.findChildren<ControlFrame*>().isEmpty());
}

TEST(TourWindowLifetime, TheMainWindowMayEndWhileTheTourIsOpen) {
  TourState state{26};
  QPointer<TourWindow> tour;
  {
    FakeHost host;
    tour = new TourWindow(host, state);
    tour->open();
    ASSERT_TRUE(tour->isVisible());
  }
  EXPECT_TRUE(tour.isNull());
  QCoreApplication::sendPostedEvents();
  EXPECT_EQ(state.step, 26);
}

TEST_F(TourWindowTest, TheWholePositionReportFitsItsLabel) {
  openAt(28);
  QTest::mouseClick(label(), Qt::LeftButton);
  QFont letters = label()->font();
  letters.setPixelSize(6);
  const QRect needed = QFontMetrics(letters).boundingRect(
      label()->rect(), Qt::AlignLeft | Qt::AlignVCenter | Qt::TextWordWrap, label()->text());
  EXPECT_TRUE(label()->rect().contains(needed));
}

TEST_F(TourWindowTest, NothingClipsInEveryStepWithLettersAQuarterLarger) {
  QFont larger = QApplication::font();
  larger.setPointSizeF(larger.pointSizeF() * 1.25);
  tour_ = std::make_unique<TourWindow>(host_, state_);
  tour_->setFont(larger);
  tour_->resize(tour_->sizeHint());
  tour_->open();
  for (int step = 1; step <= 29; ++step) {
    SCOPED_TRACE(step);
    for (QPushButton* button : {previous(), next(), closeButton()}) {
      const QFontMetrics metrics(button->font());
      EXPECT_GE(button->width(), metrics.horizontalAdvance(button->text()) + 8);
      EXPECT_GE(button->height(), metrics.height() + 4);
      EXPECT_TRUE(tour_->rect().contains(button->geometry()));
    }
    auto* box = child<QPlainTextEdit>("Text1");
    EXPECT_TRUE(tour_->rect().contains(box->geometry()));
    EXPECT_GE(box->viewport()->height(), 4 * QFontMetrics(box->font()).lineSpacing());
    EXPECT_EQ(box->horizontalScrollBar()->maximum(), 0);
    EXPECT_GT(label()->width(), 60);
    press(next());
  }
}

TEST_F(TourWindowTest, EveryControlTellsWhatItIsForAndTabGoesThroughThem) {
  open();
  for (const char* name : {"Text1", "Label1", "Command1", "Command2", "Command3"}) {
    EXPECT_FALSE(child<QWidget>(name)->accessibleName().isEmpty()) << name;
  }
  EXPECT_EQ(tour_->accessibleDescription(), QStringLiteral("Step 1 of 29"));
  EXPECT_EQ(tour_->focusWidget(), next());
  QStringList order;
  for (int i = 0; i < 5; ++i) {
    QTest::keyClick(tour_->focusWidget(), Qt::Key_Tab);
    order.append(tour_->focusWidget()->objectName());
  }
  EXPECT_EQ(order.join(QLatin1Char(' ')).toStdString(), "Command3 Text1 Label1 Command1 Command2");
}

}  // namespace
}  // namespace vel
