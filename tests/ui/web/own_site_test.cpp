#include <QDialog>
#include <QLabel>

#include <gmock/gmock.h>

#include "tables/tables.h"
#include "tests/ui/web/web_fixture.h"
#include "web/ui/conffig_dialog.h"
#include "web/ui/flight_search.h"

namespace vel {
namespace {

using test::waitFor;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kNoService = "The service velweb can't be started. velwebを起動できません";

/// The flight search and Conffig's Test where the flight page is velweb's.
class OwnSiteTest : public test::WebWindowTest {
 protected:
  void SetUp() override {
    window_.resize(400, 300);
    window_.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window_));
  }
  /// A velweb that never says anything.
  [[nodiscard]] static QString silentService() {
    qputenv("VEL_STAND_IN", "silent");
    return QStringLiteral(VEL_STAND_IN_SERVICE);
  }
  /// One that says its address after this time, and stays until its pipe closes.
  [[nodiscard]] static QString slowService(const char* milliseconds) {
    qputenv("VEL_STAND_IN", milliseconds);
    return QStringLiteral(VEL_STAND_IN_SERVICE);
  }
  void use(const QString& velweb) {
    makeProgram(velweb);
    tables_.emplace(base_.folders, program_->context().encoding);
  }
  void searchFlight(const char* flight) {
    openFlightSearch(program_->context(), web_->site(), *tables_, FlightEngine::homepage,
                     FlightValues::fromAcars(flight), &window_);
  }
  /// The wait's window once it is seen.
  [[nodiscard]] static QDialog* wait(const QWidget& owner) {
    QDialog* found = nullptr;
    EXPECT_TRUE(waitFor([&] {
      found = owner.findChild<QDialog*>(QStringLiteral("ServiceWait"));
      return found != nullptr && found->isVisible();
    }));
    return found;
  }
  /// Waits until the service has come up, or has been given up, and all that
  /// asked for it before have been answered.
  [[nodiscard]] bool serviceHasAnswered() {
    QObject asker;
    bool answered = false;
    web_->site().requestConversion(&asker, [&answered](const std::string&) { answered = true; });
    return waitFor([&answered] { return answered; });
  }
  static bool waits(const QWidget& owner) {
    const auto* found = owner.findChild<QDialog*>(QStringLiteral("ServiceWait"));
    return found != nullptr && found->isVisible();
  }
  static void press(const QWidget& owner, const char* name) {
    auto* button = owner.findChild<QPushButton*>(QString::fromLatin1(name));
    ASSERT_NE(button, nullptr) << name;
    QTest::mouseClick(button, Qt::LeftButton);
  }

  QWidget window_;
  std::optional<Tables> tables_;
};

TEST_F(OwnSiteTest, AServiceThatHangsAtItsStartHoldsNoWindowAndCanBeGivenUp) {
  use(silentService());
  searchFlight("BA0007");
  QDialog* waiting = wait(window_);
  ASSERT_NE(waiting, nullptr);
  EXPECT_FALSE(waiting->isModal());
  int ticks = 0;
  QTimer ticking;
  QObject::connect(&ticking, &QTimer::timeout, [&ticks] { ++ticks; });
  ticking.start(10);
  EXPECT_TRUE(waitFor([&ticks] { return ticks > 20; }));
  press(*waiting, "CancelButton");
  EXPECT_FALSE(waits(window_));
  EXPECT_TRUE(serviceHasAnswered());
  EXPECT_THAT(desktop_.messages, IsEmpty());
  EXPECT_THAT(desktop_.opened, IsEmpty());
}

TEST_F(OwnSiteTest, EscapeGivesTheWaitUpToo) {
  use(slowService("1000"));
  searchFlight("BA0007");
  QDialog* waiting = wait(window_);
  ASSERT_NE(waiting, nullptr);
  QTest::keyClick(waiting, Qt::Key_Escape);
  EXPECT_FALSE(waits(window_));
  EXPECT_TRUE(serviceHasAnswered());
  EXPECT_THAT(desktop_.opened, IsEmpty());
}

TEST_F(OwnSiteTest, AServiceThatHangsIsReportedWhenItsTimeIsOver) {
  use(silentService());
  searchFlight("BA0007");
  EXPECT_THAT(desktop_.messages, IsEmpty());
  EXPECT_TRUE(waitFor([this] { return !desktop_.messages.empty(); }));
  EXPECT_THAT(desktop_.messages, ElementsAre(kNoService));
  EXPECT_THAT(desktop_.opened, IsEmpty());
  EXPECT_FALSE(waits(window_));
}

TEST_F(OwnSiteTest, ASlowServiceOpensTheFlightPageWhenItIsThere) {
  use(slowService("1000"));
  searchFlight("BA0007");
  EXPECT_NE(wait(window_), nullptr);
  EXPECT_TRUE(waitFor([this] { return !desktop_.opened.empty(); }));
  EXPECT_THAT(desktop_.opened, ElementsAre("http://127.0.0.1:9/?F=BA0007"));
  EXPECT_FALSE(waits(window_));
  EXPECT_THAT(desktop_.messages, IsEmpty());
}

TEST_F(OwnSiteTest, OfTwoSearchesThatWaitTheLastOneOpens) {
  use(slowService("300"));
  searchFlight("BA0007");
  searchFlight("JL0012");
  EXPECT_TRUE(waitFor([this] { return !desktop_.opened.empty(); }));
  EXPECT_TRUE(serviceHasAnswered());
  EXPECT_THAT(desktop_.opened, ElementsAre("http://127.0.0.1:9/?F=JL0012"));
}

TEST_F(OwnSiteTest, AMissingServiceIsSaidAndNothingOpens) {
  use(QStringLiteral("/nowhere/velweb"));
  searchFlight("BA0007");
  EXPECT_TRUE(waitFor([this] { return !desktop_.messages.empty(); }));
  EXPECT_THAT(desktop_.messages, ElementsAre(kNoService));
  EXPECT_THAT(desktop_.opened, IsEmpty());
}

TEST_F(OwnSiteTest, ConffigsTestSaysTheSameWithoutItsSample) {
  use(QStringLiteral("/nowhere/velweb"));
  program_->settings().env_FltDefUrl0 = "/?F=";
  ConffigDialog conffig(program_->context(), web_->site(), &window_);
  conffig.show();
  press(conffig, "Command1(1)");
  EXPECT_TRUE(waitFor([this] { return !desktop_.messages.empty(); }));
  EXPECT_THAT(desktop_.messages, ElementsAre(kNoService));
  EXPECT_THAT(desktop_.opened, IsEmpty());
}

TEST_F(OwnSiteTest, ConffigsTestWaitsForASlowServiceAndOpensItsSample) {
  use(slowService("1000"));
  program_->settings().env_FltDefUrl0 = "/?F=";
  ConffigDialog conffig(program_->context(), web_->site(), &window_);
  conffig.open();
  press(conffig, "Command1(1)");
  EXPECT_NE(wait(conffig), nullptr);
  EXPECT_TRUE(waitFor([this] { return !desktop_.opened.empty(); }));
  EXPECT_THAT(desktop_.messages, ElementsAre("The sample is opened by using 'BA0007'."));
  EXPECT_THAT(desktop_.opened, ElementsAre("http://127.0.0.1:9/?F=BA0007"));
}

TEST_F(OwnSiteTest, ClosingConffigGivesItsTestUp) {
  use(slowService("300"));
  program_->settings().env_FltDefUrl0 = "/?F=";
  {
    ConffigDialog conffig(program_->context(), web_->site(), &window_);
    conffig.show();
    press(conffig, "Command1(1)");
    press(conffig, "CancelButton");
  }
  EXPECT_TRUE(serviceHasAnswered());
  EXPECT_THAT(desktop_.messages, IsEmpty());
  EXPECT_THAT(desktop_.opened, IsEmpty());
}

}  // namespace
}  // namespace vel
