#include "testing/ChildProgram.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <thread>
#include <utility>

extern char** environ;

namespace kifo::testing {
namespace {

constexpr std::chrono::milliseconds kPatience(20000);  // a loaded machine is slow

std::vector<std::string> environmentWith(const ChildProgram::Environment& changes) {
  std::vector<std::string> variables;
  for (char** variable = environ; *variable; ++variable) {
    const std::string text = *variable;
    if (!changes.contains(text.substr(0, text.find('=')))) variables.push_back(text);
  }
  for (const auto& [name, value] : changes) {
    if (!value.empty()) variables.push_back(name + "=" + value);
  }
  return variables;
}

std::vector<char*> pointers(std::vector<std::string>& texts) {
  std::vector<char*> all;
  for (auto& text : texts) all.push_back(text.data());
  all.push_back(nullptr);
  return all;
}

/// Connects the child's `descriptor` to `reading`; returns the end to close once the child runs.
int connect(posix_spawn_file_actions_t& actions, int descriptor, int& reading) {
  std::array<int, 2> ends{-1, -1};
  if (pipe2(ends.data(), O_CLOEXEC) != 0) return -1;
  posix_spawn_file_actions_adddup2(&actions, ends[1], descriptor);
  reading = ends[0];
  return ends[1];
}

}  // namespace

void ChildProgram::start(const std::vector<std::string>& words, const Environment& changes,
                         Errors errors) {
  end();
  std::vector<std::string> command{"setpriv", "--pdeathsig", "KILL"};
  command.insert(command.end(), words.begin(), words.end());
  auto variables = environmentWith(changes);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  const int output = connect(actions, STDOUT_FILENO, output_.end);
  int complaints = -1;
  if (errors == Errors::kept) {
    complaints = connect(actions, STDERR_FILENO, errors_.end);
  } else {
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
  }
  if (posix_spawnp(&process_, command.front().c_str(), &actions, nullptr, pointers(command).data(),
                   pointers(variables).data()) != 0) {
    process_ = -1;
  }
  posix_spawn_file_actions_destroy(&actions);
  for (const int end : {output, complaints}) {
    if (end >= 0) close(end);
  }
}

bool ChildProgram::Stream::read() {
  pollfd polled{end, POLLIN, 0};
  if (end < 0 || poll(&polled, 1, static_cast<int>(kPatience.count())) <= 0) return false;
  std::array<char, 65536> bytes{};
  const auto count = ::read(end, bytes.data(), bytes.size());
  if (count <= 0) return false;
  text.append(bytes.data(), static_cast<std::size_t>(count));
  return true;
}

std::string ChildProgram::Stream::readAll() {
  while (read()) {
  }
  return std::exchange(text, {});
}

void ChildProgram::Stream::close() {
  if (end >= 0) ::close(end);
  *this = {};
}

std::string ChildProgram::readLine() {
  std::size_t end = 0;
  while ((end = output_.text.find('\n')) == std::string::npos) {
    if (!output_.read()) return {};
  }
  const std::string line = output_.text.substr(0, end);
  output_.text.erase(0, end + 1);
  return line;
}

std::string ChildProgram::readAll() {
  return output_.readAll();
}

std::string ChildProgram::readErrors() {
  return errors_.readAll();
}

bool ChildProgram::awaitOutput(std::size_t count) {
  while (output_.text.size() < count) {
    if (!output_.read()) return false;
  }
  output_.text.erase(0, count);
  return true;
}

std::optional<int> ChildProgram::reap() {
  const auto until = std::chrono::steady_clock::now() + kPatience;
  int status = 0;
  while (waitpid(process_, &status, WNOHANG) == 0) {
    if (std::chrono::steady_clock::now() >= until) return std::nullopt;
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
  }
  process_ = -1;
  return status;
}

std::optional<int> ChildProgram::wait() {
  if (process_ < 0) return std::nullopt;
  readErrors();
  readAll();
  const auto status = reap();
  return status && WIFEXITED(*status) ? std::optional(WEXITSTATUS(*status)) : std::nullopt;
}

void ChildProgram::end() {
  output_.close();
  errors_.close();
  if (process_ < 0) return;
  ::kill(process_, SIGTERM);
  if (!reap()) kill();
}

void ChildProgram::kill() {
  if (process_ < 0) return;
  ::kill(process_, SIGKILL);
  waitpid(process_, nullptr, 0);
  process_ = -1;
}

}  // namespace kifo::testing
