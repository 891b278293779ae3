#include <array>
#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <limits>
#include <thread>

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <poll.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/velweb/velweb_process.h"

namespace vel::test {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

bool readableWithin(int descriptor, milliseconds most) {
  pollfd watched{descriptor, POLLIN, 0};
  return ::poll(&watched, 1, static_cast<int>(most.count())) > 0;
}

}  // namespace

VelwebProcess::VelwebProcess(const std::vector<std::string>& options, const std::string& program) {
  std::array<int, 2> input{};
  std::array<int, 2> output{};
  if (::pipe2(input.data(), O_CLOEXEC) != 0 || ::pipe2(output.data(), O_CLOEXEC) != 0) return;
  std::vector<std::string> words = {program, "--parent-pipe"};
  words.insert(words.end(), options.begin(), options.end());
  std::vector<char*> arguments;
  for (std::string& word : words) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  const pid_t child = ::fork();
  if (child == 0) {
    if (::dup2(input[0], STDIN_FILENO) < 0 || ::dup2(output[1], STDOUT_FILENO) < 0) ::_exit(126);
    ::execv(program.c_str(), arguments.data());
    ::_exit(127);
  }
  process_ = child;
  ::close(input[0]);
  ::close(output[1]);
  pipe_ = input[1];
  char c = 0;
  while (readableWithin(output[0], kLong) && ::read(output[0], &c, 1) == 1 && c != '\n') {
    line_ += c;
  }
  // Whatever comes after the line would be in the way of the program.
  if (readableWithin(output[0], milliseconds(50)) && ::read(output[0], &c, 1) == 1)
    line_ += "\n...";
  ::close(output[0]);
  const std::size_t colon = line_.rfind(':');
  if (colon != std::string::npos) port_ = std::atoi(line_.c_str() + colon + 1);
}

VelwebProcess::~VelwebProcess() {
  closePipe();
  if (process_ > 0 && !endsWithin(kLong)) {
    ::kill(static_cast<pid_t>(process_), SIGKILL);
    ::waitpid(static_cast<pid_t>(process_), nullptr, 0);
  }
}

std::size_t VelwebProcess::mostMemory() const {
  std::ifstream status("/proc/" + std::to_string(process_) + "/status");
  for (std::string word; status >> word;) {
    std::size_t kibibytes = 0;
    if (word == "VmHWM:" && status >> kibibytes) return kibibytes << 10;
  }
  return std::numeric_limits<std::size_t>::max();
}

std::size_t VelwebProcess::openFiles() const {
  std::error_code failure;
  const std::filesystem::directory_iterator files("/proc/" + std::to_string(process_) + "/fd",
                                                  failure);
  return static_cast<std::size_t>(std::distance(begin(files), end(files)));
}

void VelwebProcess::closePipe() {
  if (pipe_ >= 0) ::close(static_cast<int>(pipe_));
  pipe_ = -1;
}

bool VelwebProcess::endsWithin(milliseconds most) {
  const auto end = Clock::now() + most;
  while (!ended_) {
    int status = 0;
    if (::waitpid(static_cast<pid_t>(process_), &status, WNOHANG) == process_) {
      ended_ = true;
      status_ = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    } else if (Clock::now() > end) {
      return false;
    } else {
      std::this_thread::sleep_for(milliseconds(10));
    }
  }
  return true;
}

RawClient::RawClient(int port) : socket_(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<std::uint16_t>(port));
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  connected_ = ::connect(socket_, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
}

RawClient::~RawClient() { ::close(socket_); }

bool RawClient::send(std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t sent = ::send(socket_, bytes.data(), bytes.size(), MSG_NOSIGNAL);
    if (sent <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(sent));
  }
  return true;
}

void RawClient::endSending() { ::shutdown(socket_, SHUT_WR); }

bool RawClient::isClosedWithin(milliseconds most) { return readableWithin(socket_, most); }

std::string RawClient::receiveAll(milliseconds most) {
  std::string received;
  const auto end = Clock::now() + most;
  std::array<char, 65536> buffer{};
  while (true) {
    const auto left = std::chrono::duration_cast<milliseconds>(end - Clock::now());
    if (left.count() <= 0 || !readableWithin(socket_, left)) return received + "(still open)";
    const ssize_t count = ::recv(socket_, buffer.data(), buffer.size(), 0);
    if (count <= 0) return received;
    received.append(buffer.data(), static_cast<std::size_t>(count));
  }
}

}  // namespace vel::test
