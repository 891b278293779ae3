#include <sstream>
#include <string>

#include <windows.h>
#include <gtest/gtest.h>

#include "core/platform.h"
#include "tests/velweb/velweb_process.h"

namespace vel {
namespace {

/// A program that has started the service, in a job so that what it started
/// ends with the test.
class VelwebParent : public testing::Test {
 protected:
  ~VelwebParent() override {
    if (job_ != nullptr) CloseHandle(job_);
    if (process_ != nullptr) CloseHandle(process_);
    if (output_ != nullptr) CloseHandle(output_);
    if (velweb_ != nullptr) CloseHandle(velweb_);
  }

  void start(const wchar_t* how) {
    job_ = CreateJobObjectW(nullptr, nullptr);
    JOBOBJECT_EXTENDED_LIMIT_INFORMATION limit{};
    limit.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
    ASSERT_NE(
        SetInformationJobObject(job_, JobObjectExtendedLimitInformation, &limit, sizeof limit), 0);
    SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
    HANDLE childOutput = nullptr;
    ASSERT_NE(CreatePipe(&output_, &childOutput, &inherited, 0), 0);
    ASSERT_NE(SetHandleInformation(output_, HANDLE_FLAG_INHERIT, 0), 0);
    STARTUPINFOW start{};
    start.cb = sizeof start;
    start.dwFlags = STARTF_USESTDHANDLES;
    start.hStdOutput = childOutput;
    start.hStdError = GetStdHandle(STD_ERROR_HANDLE);
    const auto program = platform::executableFolder() / "velweb_parent.exe";
    std::wstring command = L'"' + program.wstring() + L"\" " + how;
    PROCESS_INFORMATION made{};
    const BOOL started =
        CreateProcessW(nullptr, command.data(), nullptr, nullptr, TRUE,
                       CREATE_NO_WINDOW | CREATE_SUSPENDED, nullptr, nullptr, &start, &made);
    CloseHandle(childOutput);
    ASSERT_NE(started, 0) << GetLastError();
    EXPECT_NE(AssignProcessToJobObject(job_, made.hProcess), 0) << GetLastError();
    ResumeThread(made.hThread);
    CloseHandle(made.hThread);
    process_ = made.hProcess;
    std::string line;
    char byte = 0;
    DWORD count = 0;
    while (ReadFile(output_, &byte, 1, &count, nullptr) != 0 && count == 1 && byte != '\n') {
      line += byte;
    }
    std::istringstream words(line);
    int port = 0;
    DWORD number = 0;
    ASSERT_TRUE(words >> port >> number) << line;
    ASSERT_GT(port, 0);
    EXPECT_TRUE(test::RawClient(port).connected());
    velweb_ = OpenProcess(SYNCHRONIZE, FALSE, number);
    ASSERT_NE(velweb_, nullptr) << GetLastError();
  }

  void kill() const {
    ASSERT_NE(TerminateProcess(process_, 3), 0);
    ASSERT_EQ(WaitForSingleObject(process_, kLongest), WAIT_OBJECT_0);
  }

  /// True once the service has ended. Its port tells less: Wine's server may go on
  /// listening there for nobody, until connections wait for minutes.
  [[nodiscard]] bool velwebEnds() const {
    return WaitForSingleObject(velweb_, kLongest) == WAIT_OBJECT_0;
  }

 private:
  // Less than the holder of the pipe waits.
  static constexpr DWORD kLongest = 30'000;

  HANDLE job_ = nullptr;
  HANDLE process_ = nullptr;
  HANDLE output_ = nullptr;
  HANDLE velweb_ = nullptr;
};

TEST_F(VelwebParent, EndsWhenTheProgramThatStartedItIsKilled) {
  ASSERT_NO_FATAL_FAILURE(start(L""));
  kill();
  EXPECT_TRUE(velwebEnds());
}

TEST_F(VelwebParent, EndsAlsoWhereAnotherProgramHoldsThePipe) {
  ASSERT_NO_FATAL_FAILURE(start(L"held"));
  kill();
  EXPECT_TRUE(velwebEnds());
}

}  // namespace
}  // namespace vel
