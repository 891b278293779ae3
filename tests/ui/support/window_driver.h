#pragma once

#include <QApplication>
#include <QComboBox>
#include <QInputMethodEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QThread>
#include <QTimer>
#include <QWidget>
#include <chrono>
#include <functional>
#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

#include "core/job.h"

namespace vel::test {

/// How long a test waits for what a slow and busy machine takes its time for, in
/// milliseconds.
constexpr int kPatience = 60'000;

/// The jobs of the program under test; null while there is none. What a user
/// does below waits until they are done, as a user waits for the window.
inline JobRunner* drivenJobs = nullptr;

/// Lets events run until no job is left.
inline void finishJobs() {
  while (drivenJobs != nullptr && !drivenJobs->isIdle()) QCoreApplication::processEvents();
}

/// Calls a function again and again as window events run, between the steps of
/// whatever jobs there are, as long as it lives. However fast the machine, a job
/// takes many steps meanwhile, and what a read has found is shown in parts: the
/// first look takes longer than a list waits between two parts.
class BetweenSteps {
 public:
  explicit BetweenSteps(const std::function<void()>& look) {
    QObject::connect(&turns_, &QTimer::timeout, &turns_, [this, look] {
      if (drivenJobs != nullptr && !drivenJobs->isIdle() && !waited_) {
        waited_ = true;
        QThread::msleep(kLongerThanAPart);
      }
      look();
    });
    if (drivenJobs != nullptr) drivenJobs->longestSlice = std::chrono::milliseconds(0);
    turns_.start(0);
  }
  ~BetweenSteps() {
    if (drivenJobs != nullptr) drivenJobs->longestSlice = std::chrono::milliseconds::max();
  }
  BetweenSteps(const BetweenSteps&) = delete;
  BetweenSteps& operator=(const BetweenSteps&) = delete;

 private:
  static constexpr unsigned long kLongerThanAPart = 40;

  QTimer turns_;
  bool waited_ = false;
};

/// The control of that object name below a window; the test fails without one.
template <typename T>
T& control(const QObject& window, const char* name) {
  T* found = window.findChild<T*>(QString::fromLatin1(name));
  if (found == nullptr) throw std::runtime_error(std::string("no control ") + name);
  return *found;
}

/// Text as an input method commits it: key strokes alone cannot give Japanese.
inline void commitText(QWidget& box, const std::string& text) {
  QInputMethodEvent commit;
  commit.setCommitString(QString::fromStdString(text));
  QApplication::sendEvent(&box, &commit);
  finishJobs();
}

/// Types a text with the keys.
inline void typeKeys(QLineEdit& box, const std::string& ascii) {
  box.setFocus();
  QTest::keyClicks(&box, QString::fromStdString(ascii));
  finishJobs();
}

/// Selects all that a box holds and types over it; an empty text deletes it.
inline void typeOver(QLineEdit& box, const std::string& text) {
  box.setFocus();
  QTest::keyClick(&box, Qt::Key_A, Qt::ControlModifier);
  QTest::keyClick(&box, Qt::Key_Delete);
  bool ascii = true;
  for (const char c : text) ascii = ascii && static_cast<unsigned char>(c) < 0x80;
  if (ascii) {
    QTest::keyClicks(&box, QString::fromStdString(text));
  } else {
    commitText(box, text);
  }
  finishJobs();
}

inline void press(QPushButton& button) {
  QTest::mouseClick(&button, Qt::LeftButton);
  finishJobs();
}

/// One key in a control.
inline void pressKey(QWidget& control, Qt::Key key) {
  QTest::keyClick(&control, key);
  finishJobs();
}

/// Selects an entry of a chooser with the arrow keys.
inline void choose(QComboBox& chooser, int entry) {
  chooser.setFocus();
  for (int tries = 0; chooser.currentIndex() != entry && tries < 50; ++tries) {
    QTest::keyClick(&chooser, chooser.currentIndex() < entry ? Qt::Key_Down : Qt::Key_Up);
  }
  EXPECT_EQ(chooser.currentIndex(), entry);
  finishJobs();
}

/// Runs `trigger`, which opens a dialog or a menu of that object name, and
/// `action` once it is there; what is still open after it is closed.
inline void inDialog(const char* name, const std::function<void()>& trigger,
                     const std::function<void(QWidget&)>& action) {
  bool opened = false;
  QTimer timer;
  timer.setInterval(2);
  QObject::connect(&timer, &QTimer::timeout, &timer, [&] {
    QWidget* dialog = QApplication::activePopupWidget();
    if (dialog == nullptr) dialog = QApplication::activeModalWidget();
    if (dialog == nullptr || dialog->objectName() != QLatin1String(name)) return;
    timer.stop();
    opened = true;
    try {
      action(*dialog);
    } catch (const std::exception& error) {
      ADD_FAILURE() << error.what();
    }
    if (dialog->isVisible()) dialog->close();
  });
  timer.start();
  trigger();
  EXPECT_TRUE(opened) << name << " did not open";
}

}  // namespace vel::test
