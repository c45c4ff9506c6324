#include "testing/ChildProgram.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <thread>

extern char** environ;

namespace kifo::testing {
namespace {

constexpr int kPatience = 20000;  // milliseconds; a loaded machine is slow

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

bool endsWithin(pid_t process, std::chrono::milliseconds patience) {
  const auto until = std::chrono::steady_clock::now() + patience;
  while (waitpid(process, nullptr, WNOHANG) == 0) {
    if (std::chrono::steady_clock::now() >= until) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
  }
  return true;
}

}  // namespace

void ChildProgram::start(const std::vector<std::string>& words, const Environment& changes) {
  end();
  int ends[2] = {};
  if (pipe2(ends, O_CLOEXEC) != 0) return;
  output_ = ends[0];
  std::vector<std::string> command{"setpriv", "--pdeathsig", "KILL"};
  command.insert(command.end(), words.begin(), words.end());
  auto variables = environmentWith(changes);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
  posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
  if (posix_spawnp(&process_, command.front().c_str(), &actions, nullptr, pointers(command).data(),
                   pointers(variables).data()) != 0) {
    process_ = -1;
  }
  posix_spawn_file_actions_destroy(&actions);
  close(ends[1]);
}

std::string ChildProgram::readLine() {
  return readUntil('\n');
}

std::string ChildProgram::readAll() {
  return readUntil(std::nullopt);
}

std::string ChildProgram::readUntil(std::optional<char> end) {
  std::string text;
  char next = 0;
  pollfd polled{output_, POLLIN, 0};
  while (output_ >= 0 && poll(&polled, 1, kPatience) > 0 && read(output_, &next, 1) == 1) {
    if (next == end) return text;
    text += next;
  }
  return end ? std::string() : text;
}

void ChildProgram::end() {
  if (output_ >= 0) close(output_);
  output_ = -1;
  if (process_ < 0) return;
  kill(process_, SIGTERM);
  if (!endsWithin(process_, std::chrono::milliseconds(kPatience))) {
    kill(process_, SIGKILL);
    waitpid(process_, nullptr, 0);
  }
  process_ = -1;
}

}  // namespace kifo::testing
