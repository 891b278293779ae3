#include <QTest>
#include <cstring>
#include <string>

#include <windows.h>
#include <gtest/gtest.h>

#include "core/ui/qt_desktop.h"

namespace vel {
namespace {

// The clipboard as another program sees it: it may hold it open for a moment.
bool openClipboard() {
  return QTest::qWaitFor([] { return OpenClipboard(nullptr) != 0; });
}

std::wstring systemText() {
  if (!openClipboard()) return L"(cannot be opened)";
  std::wstring text = L"(no text)";
  if (HANDLE data = GetClipboardData(CF_UNICODETEXT); data != nullptr) {
    text = static_cast<const wchar_t*>(GlobalLock(data));
    GlobalUnlock(data);
  }
  CloseClipboard();
  return text;
}

void setSystemText(const std::wstring& text) {
  ASSERT_TRUE(openClipboard());
  EmptyClipboard();
  const std::size_t size = (text.size() + 1) * sizeof(wchar_t);
  HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, size);
  std::memcpy(GlobalLock(memory), text.c_str(), size);
  GlobalUnlock(memory);
  EXPECT_NE(SetClipboardData(CF_UNICODETEXT, memory), nullptr);
  CloseClipboard();
}

TEST(Clipboard, WhatIsCopiedReachesOtherPrograms) {
  QtDesktop desktop;
  desktop.setClipboardText("JL0012\t臨時便 ①");
  EXPECT_EQ(systemText(), L"JL0012\t臨時便 ①");
}

TEST(Clipboard, WhatOtherProgramsCopiedIsRead) {
  QtDesktop desktop;
  ASSERT_NO_FATAL_FAILURE(setSystemText(L"羽田 HND - LAX"));
  EXPECT_TRUE(QTest::qWaitFor([&] { return desktop.clipboardText() == "羽田 HND - LAX"; }));
}

}  // namespace
}  // namespace vel
