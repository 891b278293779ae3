#pragma once

#include <QTest>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "app/ui/program.h"
#include "tests/support/recording_desktop.h"
#include "tests/support/test_files.h"
#include "web/ui/web_access.h"

namespace vel::test {

/// A line of a raw log as the decoder writes it.
[[nodiscard]] inline std::string rawLine(std::string_view header, std::string_view body,
                                         std::string_view endMark = "<ETX>") {
  return std::string(header) + ">+*<SYN><SYN><SOH>2.JA8089<NAK>H13<STX>M01AJL0012" +
         std::string(body) + std::string(endMark) + "<CRC><DEL>";
}

/// What the viewer shows of it, with line ends as the text area has them.
[[nodiscard]] inline std::string shownBlock(std::string_view header, std::string_view body) {
  return "---------------------------[" + std::string(header) +
         "]\nJL0012 (JA8089)    [H1:3:M01A] MODE:2   \n" + std::string(body) + "\n\n";
}

/// Waits up to two minutes, letting events run: half a million lines take a
/// sanitizer on a busy machine that long.
[[nodiscard]] inline bool waitFor(const std::function<bool()>& condition) {
  return QTest::qWaitFor(condition, 120'000);
}

/// A base folder, a program without browsers and the raw log viewer.
class WebWindowTest : public testing::Test {
 protected:
  /// Makes the program; to be called after services.ini was written.
  void makeProgram(const QString& velweb = QStringLiteral("/nowhere/velweb")) {
    program_ = std::make_unique<Program>(desktop_, base_.folders);
    web_ = std::make_unique<WebAccess>(program_->context(), velweb);
    program_->addUnloadStep([this] { web_->rawLogs().close(); });
  }
  void TearDown() override {
    web_.reset();
    program_.reset();
  }

  void writeRawLog(const std::string& name, std::string_view bytes) const {
    writeBytes(base_.folders.eachLogs / (name + ".log"), bytes);
  }

  /// Opens a raw log and waits until its window is in front.
  void open(const std::string& name) {
    web_->rawLogs().open(name);
    ASSERT_NE(viewer(), nullptr);
    ASSERT_TRUE(QTest::qWaitForWindowActive(viewer()));
    letWindowRead();
  }
  /// Waits until the window has served its activation and read its log.
  void letWindowRead() const {
    QTest::qWait(30);
    ASSERT_TRUE(waitFor([this] { return program_->context().jobs.isIdle(); }));
  }

  [[nodiscard]] RawLogViewer* viewer() const { return web_->rawLogs().viewer(); }
  template <typename T>
  [[nodiscard]] T* control(const char* name) const {
    T* found = viewer()->findChild<T*>(QString::fromLatin1(name));
    EXPECT_NE(found, nullptr) << name;
    return found;
  }
  void press(const char* name) const {
    QTest::mouseClick(control<QPushButton>(name), Qt::LeftButton);
  }
  [[nodiscard]] std::string text() const {
    return control<FindableText>("Text1")->toPlainText().toStdString();
  }

  TemporaryBase base_;
  RecordingDesktop desktop_;
  std::unique_ptr<Program> program_;
  std::unique_ptr<WebAccess> web_;
};

}  // namespace vel::test
