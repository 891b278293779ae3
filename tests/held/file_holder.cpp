#include "tests/held/file_holder.h"

#include <utility>

#include <gtest/gtest.h>

#include "core/platform.h"

namespace vel::test {
namespace {

constexpr DWORD kPatience = 30000;  // milliseconds

void close(HANDLE& handle) {
  if (handle != nullptr) CloseHandle(std::exchange(handle, nullptr));
}

const wchar_t* wordOf(FileHolder::Shares shares) {
  switch (shares) {
    case FileHolder::Shares::reading:
      return L"read";
    case FileHolder::Shares::isLock:
      return L"mutex";
    case FileHolder::Shares::nothing:
      break;
  }
  return L"none";
}

}  // namespace

FileHolder::FileHolder(const std::filesystem::path& path, Shares shares) {
  SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
  HANDLE childInput = nullptr;
  HANDLE childOutput = nullptr;
  if (CreatePipe(&childInput, &input_, &inherited, 0) == 0 ||
      CreatePipe(&output_, &childOutput, &inherited, 0) == 0 ||
      SetHandleInformation(input_, HANDLE_FLAG_INHERIT, 0) == 0 ||
      SetHandleInformation(output_, HANDLE_FLAG_INHERIT, 0) == 0) {
    ADD_FAILURE() << "no pipe to hold_file: " << GetLastError();
    return;
  }
  STARTUPINFOW start{};
  start.cb = sizeof start;
  start.dwFlags = STARTF_USESTDHANDLES;
  start.hStdInput = childInput;
  start.hStdOutput = childOutput;
  start.hStdError = GetStdHandle(STD_ERROR_HANDLE);
  const std::filesystem::path program = platform::executableFolder() / "hold_file.exe";
  std::wstring command =
      L'"' + program.wstring() + L"\" \"" + path.wstring() + L"\" " + wordOf(shares);
  const BOOL started = CreateProcessW(program.c_str(), command.data(), nullptr, nullptr, TRUE,
                                      CREATE_NO_WINDOW, nullptr, nullptr, &start, &process_);
  const DWORD code = GetLastError();
  close(childInput);
  close(childOutput);
  if (started == 0) {
    ADD_FAILURE() << "hold_file did not start: " << code;
    return;
  }
  const std::string answer = readAnswer();
  holding_ = answer == "held";
  EXPECT_EQ(answer, "held") << path;
}

FileHolder::~FileHolder() {
  if (!release()) crash();
  close(input_);
  close(output_);
  close(process_.hThread);
  close(process_.hProcess);
}

std::string FileHolder::readAnswer() {
  std::string answer;
  char byte = 0;
  DWORD count = 0;
  while (ReadFile(output_, &byte, 1, &count, nullptr) != 0 && count == 1 && byte != '\n') {
    if (byte != '\r') answer += byte;
  }
  return answer;
}

bool FileHolder::release() {
  close(input_);
  holding_ = false;
  return process_.hProcess == nullptr ||
         WaitForSingleObject(process_.hProcess, kPatience) == WAIT_OBJECT_0;
}

bool FileHolder::crash() {
  holding_ = false;
  return TerminateProcess(process_.hProcess, 3) != 0 &&
         WaitForSingleObject(process_.hProcess, kPatience) == WAIT_OBJECT_0;
}

}  // namespace vel::test
