#include <array>
#include <filesystem>
#include <string>

#include <windows.h>
#include <gmock/gmock.h>

#include "core/file.h"
#include "core/version.h"
#include "tests/ui/frame/the_program.h"

namespace vel {
namespace {

namespace fs = std::filesystem;
using test::kLongEnough;
using testing::HasSubstr;

constexpr UINT kShiftJis = 932;

/// The program, started from a console as from a command prompt: it is given no
/// place for what it prints, unless it goes to a file.
class TheProgramInAConsole : public test::TheProgram {
 protected:
  TheProgramInAConsole() {
    for (std::size_t i = 0; i < kStreams.size(); ++i) own_[i] = GetStdHandle(kStreams[i]);
    FreeConsole();
    hasConsole_ = AllocConsole() != 0;
    SetConsoleOutputCP(kShiftJis);
  }
  ~TheProgramInAConsole() override {
    FreeConsole();
    for (std::size_t i = 0; i < kStreams.size(); ++i) SetStdHandle(kStreams[i], own_[i]);
  }
  void SetUp() override {
    TheProgram::SetUp();
    ASSERT_TRUE(hasConsole_) << GetLastError();
  }

  /// Runs it to its end; its exit status.
  static DWORD run(const std::wstring& options, HANDLE output = nullptr) {
    std::wstring command = L'"' + fs::path(VEL_PROGRAM).wstring() + L"\" " + options;
    STARTUPINFOW start{};
    start.cb = sizeof start;
    start.dwFlags = STARTF_USESTDHANDLES;
    start.hStdOutput = output;
    PROCESS_INFORMATION made{};
    if (CreateProcessW(nullptr, command.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &start,
                       &made) == 0) {
      ADD_FAILURE() << GetLastError();
      return 0;
    }
    EXPECT_EQ(WaitForSingleObject(made.hProcess, kLongEnough), WAIT_OBJECT_0);
    DWORD status = 0;
    EXPECT_NE(GetExitCodeProcess(made.hProcess, &status), 0);
    CloseHandle(made.hThread);
    CloseHandle(made.hProcess);
    return status;
  }

  /// What stands in the console.
  static std::string seen() {
    HANDLE screen =
        CreateFileW(L"CONOUT$", GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                    nullptr, OPEN_EXISTING, 0, nullptr);
    CONSOLE_SCREEN_BUFFER_INFO info{};
    if (GetConsoleScreenBufferInfo(screen, &info) == 0) return "no console";
    const auto cells =
        static_cast<DWORD>(info.dwSize.X) * static_cast<DWORD>(info.dwCursorPosition.Y + 1);
    std::wstring text(cells, L' ');
    DWORD count = 0;
    ReadConsoleOutputCharacterW(screen, text.data(), cells, COORD{0, 0}, &count);
    CloseHandle(screen);
    text.resize(count);
    return toUtf8(text);
  }

  std::wstring programFolder() const {
    return L" --program-folder \"" + base_.folders.program.wstring() + L'"';
  }

 private:
  static constexpr std::array<DWORD, 3> kStreams = {STD_INPUT_HANDLE, STD_OUTPUT_HANDLE,
                                                    STD_ERROR_HANDLE};
  std::array<HANDLE, 3> own_{};
  bool hasConsole_ = false;
};

TEST_F(TheProgramInAConsole, SaysItsVersionAndItsOptionsThere) {
  EXPECT_EQ(run(L"--version"), 0U);
  EXPECT_THAT(seen(), HasSubstr(std::string("vel ") + kVersion));
  EXPECT_EQ(run(L"--help"), 0U);
  EXPECT_THAT(seen(), HasSubstr("--program-folder"));
}

TEST_F(TheProgramInAConsole, SaysThereWhatIsWrong) {
  EXPECT_NE(run(L"--import nothing --table nonsense"), 0U);
  EXPECT_THAT(seen(), HasSubstr("--table"));
}

TEST_F(TheProgramInAConsole, AnImportIsTold) {
  const fs::path file = base_.path() / toPath("空港.csv");
  test::writeBytes(file, "ident,type,name,iata_code\nRJTT,large_airport,Tokyo Haneda,HND\n");
  run(L"--import \"" + file.wstring() + L"\" --all --dry-run" + programFolder());
  EXPECT_THAT(seen(), HasSubstr("airport.csv: 1 new"));
}

TEST_F(TheProgramInAConsole, NamesAreShownWhateverTheConsolesEncodingWas) {
  const fs::path missing = base_.path() / toPath("空港é.csv");
  EXPECT_NE(run(L"--import \"" + missing.wstring() + L'"' + programFolder()), 0U);
  EXPECT_THAT(seen(), HasSubstr("é.csv"));
  EXPECT_EQ(GetConsoleOutputCP(), kShiftJis) << "as it was before";
}

TEST_F(TheProgramInAConsole, WhatGoesToAFileStaysThere) {
  const fs::path file = base_.path() / toPath("出力.txt");
  SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
  HANDLE output = CreateFileW(file.c_str(), GENERIC_WRITE, FILE_SHARE_READ, &inherited, CREATE_NEW,
                              FILE_ATTRIBUTE_NORMAL, nullptr);
  ASSERT_NE(output, INVALID_HANDLE_VALUE);
  EXPECT_EQ(run(L"--version", output), 0U);
  CloseHandle(output);
  EXPECT_THAT(test::readBytes(file), HasSubstr(std::string("vel ") + kVersion));
  EXPECT_THAT(seen(), testing::Not(HasSubstr(kVersion)));
}

}  // namespace
}  // namespace vel
