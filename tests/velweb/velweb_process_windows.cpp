#include <array>
#include <cstdlib>
#include <thread>

#include <windows.h>
#include <winsock2.h>
#include <gtest/gtest.h>
#include <psapi.h>
#include <ws2tcpip.h>

#include "core/platform.h"
#include "tests/velweb/velweb_process.h"

namespace vel::test {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

HANDLE toHandle(std::intptr_t handle) { return reinterpret_cast<HANDLE>(handle); }

// A word as the command lines of programs are read: a backslash counts only
// before a quote.
std::wstring quoted(const std::string& word) {
  std::wstring text = L"\"";
  std::size_t backslashes = 0;
  const std::wstring wide = platform::pathFromUtf8(word).wstring();
  for (const wchar_t c : wide) {
    if (c == L'"') text.append(backslashes + 1, L'\\');
    backslashes = c == L'\\' ? backslashes + 1 : 0;
    text += c;
  }
  text.append(backslashes, L'\\');
  return text + L'"';
}

// The next byte of a pipe, if it comes within the time.
bool readByte(HANDLE pipe, char& byte, milliseconds most) {
  const auto end = Clock::now() + most;
  DWORD count = 0;
  while (PeekNamedPipe(pipe, nullptr, 0, nullptr, &count, nullptr) != 0) {
    if (count > 0) return ReadFile(pipe, &byte, 1, &count, nullptr) != 0 && count == 1;
    if (Clock::now() > end) return false;
    std::this_thread::sleep_for(milliseconds(5));
  }
  return false;
}

// True once a connection has something to read, its end included.
bool readableWithin(sockets::Socket socket, milliseconds most) {
  WSAPOLLFD watched{socket, POLLIN, 0};
  return WSAPoll(&watched, 1, static_cast<int>(most.count())) > 0;
}

bool socketsBegun() {
  static const bool isBegun = [] {
    WSADATA data{};
    return WSAStartup(MAKEWORD(2, 2), &data) == 0;
  }();
  return isBegun;
}

}  // namespace

VelwebProcess::VelwebProcess(const std::vector<std::string>& options, const std::string& program) {
  SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
  HANDLE childInput = nullptr;
  HANDLE input = nullptr;
  HANDLE output = nullptr;
  HANDLE childOutput = nullptr;
  if (CreatePipe(&childInput, &input, &inherited, 0) == 0 ||
      CreatePipe(&output, &childOutput, &inherited, 0) == 0 ||
      SetHandleInformation(input, HANDLE_FLAG_INHERIT, 0) == 0 ||
      SetHandleInformation(output, HANDLE_FLAG_INHERIT, 0) == 0) {
    ADD_FAILURE() << "no pipes: " << GetLastError();
    return;
  }
  std::wstring command = quoted(program) + L" --parent-pipe";
  for (const std::string& option : options) command += L' ' + quoted(option);
  STARTUPINFOW start{};
  start.cb = sizeof start;
  start.dwFlags = STARTF_USESTDHANDLES;
  start.hStdInput = childInput;
  start.hStdOutput = childOutput;
  start.hStdError = GetStdHandle(STD_ERROR_HANDLE);
  PROCESS_INFORMATION made{};
  const BOOL started = CreateProcessW(nullptr, command.data(), nullptr, nullptr, TRUE,
                                      CREATE_NO_WINDOW, nullptr, nullptr, &start, &made);
  EXPECT_NE(started, 0) << GetLastError();
  CloseHandle(childInput);
  CloseHandle(childOutput);
  pipe_ = reinterpret_cast<std::intptr_t>(input);
  if (started != 0) {
    CloseHandle(made.hThread);
    process_ = reinterpret_cast<std::intptr_t>(made.hProcess);
    char c = 0;
    while (readByte(output, c, kLong) && c != '\n') {
      if (c != '\r') line_ += c;
    }
    // Whatever comes after the line would be in the way of the program.
    if (readByte(output, c, milliseconds(50))) line_ += "\n...";
  }
  CloseHandle(output);
  const std::size_t colon = line_.rfind(':');
  if (colon != std::string::npos) port_ = std::atoi(line_.c_str() + colon + 1);
}

VelwebProcess::~VelwebProcess() {
  closePipe();
  if (process_ == -1) return;
  if (!endsWithin(kLong)) TerminateProcess(toHandle(process_), 3);
  CloseHandle(toHandle(process_));
}

std::size_t VelwebProcess::mostMemory() const {
  PROCESS_MEMORY_COUNTERS counters{};
  counters.cb = sizeof counters;
  return GetProcessMemoryInfo(toHandle(process_), &counters, sizeof counters) != 0
             ? counters.PeakWorkingSetSize
             : static_cast<std::size_t>(-1);
}

std::size_t VelwebProcess::openFiles() const {
  DWORD count = 0;
  return GetProcessHandleCount(toHandle(process_), &count) != 0 ? count
                                                                : static_cast<std::size_t>(-1);
}

void VelwebProcess::closePipe() {
  if (pipe_ != -1) CloseHandle(toHandle(pipe_));
  pipe_ = -1;
}

bool VelwebProcess::endsWithin(milliseconds most) {
  if (ended_) return true;
  if (WaitForSingleObject(toHandle(process_), static_cast<DWORD>(most.count())) != WAIT_OBJECT_0) {
    return false;
  }
  DWORD status = 0;
  ended_ = GetExitCodeProcess(toHandle(process_), &status) != 0;
  status_ = static_cast<int>(status);
  return ended_;
}

RawClient::RawClient(int port) {
  if (!socketsBegun()) return;
  socket_ = WSASocketW(AF_INET, SOCK_STREAM, 0, nullptr, 0,
                       WSA_FLAG_OVERLAPPED | WSA_FLAG_NO_HANDLE_INHERIT);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<u_short>(port));
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  connected_ = ::connect(socket_, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
}

RawClient::~RawClient() { ::closesocket(socket_); }

bool RawClient::send(std::string_view bytes) {
  while (!bytes.empty()) {
    const int sent = ::send(socket_, bytes.data(), static_cast<int>(bytes.size()), 0);
    if (sent <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(sent));
  }
  return true;
}

void RawClient::endSending() { ::shutdown(socket_, SD_SEND); }

bool RawClient::isClosedWithin(milliseconds most) { return readableWithin(socket_, most); }

std::string RawClient::receiveAll(milliseconds most) {
  std::string received;
  const auto end = Clock::now() + most;
  std::array<char, 65536> buffer{};
  while (true) {
    const auto left = std::chrono::duration_cast<milliseconds>(end - Clock::now());
    if (left.count() <= 0 || !readableWithin(socket_, left)) return received + "(still open)";
    const int count = ::recv(socket_, buffer.data(), static_cast<int>(buffer.size()), 0);
    if (count <= 0) return received;
    received.append(buffer.data(), static_cast<std::size_t>(count));
  }
}

}  // namespace vel::test
