#include <QApplication>
#include <QTest>
#include <gtest/gtest.h>
#include "core/ui/program.h"
#include "hfdl/ui/hfdl_browser.h"
#include "tests/support/recording_desktop.h"
#include "tests/support/test_files.h"
using namespace vel;
TEST(Probe, Sizes) {
  for (double f : {1.0, 1.25}) {
    QFont font = QApplication::font(); font.setPointSizeF(font.pointSizeF()*f); QApplication::setFont(font);
    test::TemporaryBase base; test::RecordingDesktop desktop; Program program(desktop, base.folders); WebAccess web(program);
    base.writeData("airport.csv", {"RJTT,Tokyo Haneda HND"});
    HfdlBrowser b(program, web); b.show(); QTest::qWait(300);
    printf("font %f px %d  frame %d,%d\n", font.pointSizeF(), QFontMetrics(font).height(), b.windowHandle()->frameMargins().top(), b.windowHandle()->frameMargins().bottom());
    auto* p = b.panel(); p->findChild<QWidget*>("Frame1")->show(); p->findChild<QWidget*>("Frame2")->show(); QTest::qWait(50);
    printf("panel %dx%d min %dx%d\n", p->width(), p->height(), p->minimumSizeHint().width(), p->minimumSizeHint().height());
    for (auto* w : p->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly)) printf("  col %s %d,%d %dx%d min %dx%d\n", qPrintable(w->objectName()), w->x(), w->y(), w->width(), w->height(), w->minimumSizeHint().width(), w->minimumSizeHint().height());
    for (auto* w : p->findChildren<QWidget*>()) if (!w->objectName().isEmpty() && !w->objectName().startsWith("qt_")) printf("    %s %dx%d min %dx%d hint %dx%d\n", qPrintable(w->objectName()), w->width(), w->height(), w->minimumSizeHint().width(), w->minimumSizeHint().height(), w->sizeHint().width(), w->sizeHint().height());
    b.grab().save(QString("/tmp/hx/f%1.png").arg(f));
  }
}
