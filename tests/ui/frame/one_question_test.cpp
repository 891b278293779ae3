// Two windows that wait for the same table ask one after the other.

#include <QMessageBox>
#include <QTest>
#include <set>

#include <gtest/gtest.h>

#include "core/file.h"
#include "core/ui/event_loop_jobs.h"
#include "core/ui/qt_desktop.h"
#include "tables/ui/table_editing.h"
#include "tests/support/test_files.h"

namespace vel {
namespace {

/// An editor of a window of its own.
struct Editor {
  explicit Editor(const Context& context, const Tables& tables)
      : labels(QStringLiteral("Processing"), &window), editing(context, tables, labels) {}

  void save(const TableEdit& edit) {
    editing.rewrite(button, edit, [this] { written = true; });
  }

  QWidget window;
  BusyLabels labels;
  QPushButton button{&window};
  TableEditing editing;
  bool written = false;
};

TEST(HeldTables, AskOneAfterTheOther) {
  const test::TemporaryBase base;
  base.writeData("aircraft.csv", {"JA8089,B744"});
  base.writeData("FLIGHT.csv", {"JL0001,RJTTKSFO,-"});
  QtDesktop desktop;
  const Services services;
  const Encoding encoding = Encoding::codePage932();
  Settings settings;
  EventLoopJobs jobs;
  const Context context{desktop, base.folders, services, encoding, settings, jobs};
  const Tables tables(base.folders, encoding);
  Editor first(context, tables);
  Editor second(context, tables);
  std::optional<FolderLock> other = FolderLock::take(base.folders.data);
  ASSERT_TRUE(other.has_value());

  std::size_t open = 0;
  std::size_t most = 0;
  int looks = 0;
  QTimer look;
  look.setInterval(20);
  QObject::connect(&look, &QTimer::timeout, &look, [&] {
    open = 0;
    for (QWidget* widget : QApplication::topLevelWidgets()) {
      if (qobject_cast<QMessageBox*>(widget) != nullptr && widget->isVisible()) ++open;
    }
    most = std::max(most, open);
    // Longer than the second one's patience.
    if (open == 0 || ++looks < 80) return;
    other.reset();
    auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    ASSERT_NE(box, nullptr);
    QTest::mouseClick(box->button(QMessageBox::Retry), Qt::LeftButton);
  });
  look.start();
  first.save(equipmentEdit("JA8089", "B748"));
  second.save(flightEdit("JL0001", {"RJTT", "KLAX", "-"}));
  EXPECT_TRUE(QTest::qWaitFor([&] { return first.written && second.written; }, 60'000));
  EXPECT_EQ(most, 1U);
  EXPECT_EQ(base.data("aircraft.csv"), "JA8089,B748\r\n");
  EXPECT_EQ(base.data("FLIGHT.csv"), "JL0001,RJTTKLAX,-\r\n");
}

}  // namespace
}  // namespace vel
