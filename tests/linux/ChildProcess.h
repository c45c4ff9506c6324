#pragma once

#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <string>
#include <vector>

#include "tests/linux/Pipe.h"

extern char** environ;

namespace kifo::testing {

/// `kifo_linux_child`, run in one of its ways (see LinuxChild.cpp) with what it prints caught.
class ChildProcess {
 public:
  explicit ChildProcess(std::vector<std::string> arguments) {
    std::string program = KIFO_LINUX_CHILD;
    std::vector<char*> texts = {program.data()};
    for (auto& argument : arguments) texts.push_back(argument.data());
    texts.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, output_.writing(), 1);
    posix_spawn_file_actions_adddup2(&actions, errors_.writing(), 2);
    if (posix_spawn(&process_, KIFO_LINUX_CHILD, &actions, nullptr, texts.data(), environ) != 0) {
      process_ = -1;
    }
    posix_spawn_file_actions_destroy(&actions);
    output_.closeWriting();
    errors_.closeWriting();
  }
  ~ChildProcess() { kill(); }

  /// Waits until it has printed `count` more bytes on its output; false when it ends before that.
  bool awaitOutput(std::size_t count) { return await(output_, count).size() == count; }
  /// Everything that it prints on standard error until it ends.
  std::string errors() { return await(errors_, std::string::npos); }

  /// Its exit status; -1 when a signal ended it, -2 when it does not end by itself.
  int wait() {
    await(output_, std::string::npos);
    if (hangs_) return -2;
    int status = 0;
    waitpid(process_, &status, 0);
    process_ = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }
  void kill() {
    if (process_ < 0) return;
    ::kill(process_, SIGKILL);
    waitpid(process_, nullptr, 0);
    process_ = -1;
  }

 private:
  static constexpr int kHang = 30'000;  // milliseconds without a sign of life

  std::string await(const Pipe& pipe, std::size_t count) {
    std::string text;
    while (text.size() < count) {
      pollfd polled{pipe.reading(), POLLIN, 0};
      hangs_ = poll(&polled, 1, kHang) <= 0;
      if (hangs_) break;
      const auto more = pipe.read(std::min<std::size_t>(count - text.size(), 65536));
      if (more.empty()) break;
      text += more;
    }
    return text;
  }

  Pipe output_;
  Pipe errors_;
  pid_t process_ = -1;
  bool hangs_ = false;
};

}  // namespace kifo::testing
