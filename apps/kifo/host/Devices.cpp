#include "apps/kifo/host/Devices.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <stdexcept>
#include <vector>

#include "apps/kifo/Terminal.h"
#include "testing/TemporaryDirectory.h"

namespace kifo::tool {
namespace {

using Now = std::chrono::steady_clock;

/// One device: its process, and what of its output is not a whole line yet.
struct Device {
  int number = 0;
  pid_t process = 0;
  int output = -1;
  std::string unfinished;
};

/// A device holds one descriptor here; the usual limit is lower than a large fleet.
void raiseDescriptorLimit() {
  rlimit limit{};
  if (getrlimit(RLIMIT_NOFILE, &limit) != 0) return;
  limit.rlim_cur = limit.rlim_max;
  setrlimit(RLIMIT_NOFILE, &limit);
}

/// The script as a file that each device can read from its beginning.
std::string scriptFile(const Fleet& fleet, const testing::TemporaryDirectory& scratch) {
  if (fleet.script != "-") return fleet.script;
  std::string path = scratch.path() + "/script";
  std::ofstream(path) << std::cin.rdbuf();
  return path;
}

class Running {
 public:
  Running(const Fleet& fleet, std::string script, std::string home)
      : fleet_(fleet), script_(std::move(script)), home_(std::move(home)) {}

  int run() {
    const auto begin = Now::now();
    while (started_ < fleet_.count || !devices_.empty()) {
      const auto due = begin + std::chrono::duration<double>(started_ / fleet_.rate);
      if (started_ < fleet_.count && Now::now() >= due) {
        start();
        continue;
      }
      const std::chrono::duration<double, std::milli> left = due - Now::now();
      read(started_ < fleet_.count ? std::max(1, static_cast<int>(left.count())) : -1);
    }
    if (terminal_.isTerminal()) std::cerr << '\n';
    return status_;
  }

 private:
  void start() {
    Device device;
    device.number = ++started_;
    std::array<int, 2> pipe{};
    if (pipe2(pipe.data(), O_CLOEXEC) != 0) throw std::runtime_error(std::strerror(errno));
    device.output = pipe[0];
    const int code = spawn(device, pipe[1]);
    close(pipe[1]);
    if (code != 0) throw std::runtime_error(std::string("no device: ") + std::strerror(code));
    devices_.push_back(std::move(device));
  }

  int spawn(Device& device, int output) const {
    const std::string home = home_ + "/" + std::to_string(device.number);
    std::filesystem::create_directories(home);
    std::vector<std::string> words{"kifo", "host", script_, "--home", home, "--loopback-only"};
    if (fleet_.writesDecisions) words.emplace_back("--decisions");
    std::vector<char*> arguments;
    for (auto& word : words) arguments.push_back(word.data());
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
    const int code = posix_spawn(&device.process, "/proc/self/exe", &actions, nullptr,
                                 arguments.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    return code;
  }

  void read(int milliseconds) {
    std::vector<pollfd> waited;
    for (const auto& device : devices_) waited.push_back({device.output, POLLIN, 0});
    if (poll(waited.data(), waited.size(), milliseconds) <= 0) return;
    for (std::size_t index = 0; index < waited.size(); ++index) {
      if (waited[index].revents != 0) read(devices_[index]);
    }
    std::erase_if(devices_, [](const Device& device) { return device.output < 0; });
  }

  void read(Device& device) {
    std::array<char, 65536> bytes{};
    const ssize_t count = ::read(device.output, bytes.data(), bytes.size());
    if (count < 0 && errno == EINTR) return;
    if (count <= 0) return finish(device);
    device.unfinished.append(bytes.data(), static_cast<std::size_t>(count));
    std::size_t begin = 0;
    for (std::size_t end = 0; (end = device.unfinished.find('\n', begin)) != std::string::npos;
         begin = end + 1) {
      print(device.number, device.unfinished.substr(begin, end - begin));
    }
    device.unfinished.erase(0, begin);
  }

  static void print(int number, const std::string& line) {
    // Every line is an object, so its members follow the brace.
    std::cout << "{\"device\":" << number << ","
              << line.substr(std::min<std::size_t>(1, line.size())) << std::endl;
  }

  void finish(Device& device) {
    close(device.output);
    device.output = -1;
    int ended = 0;
    waitpid(device.process, &ended, 0);
    status_ = std::max(status_, WIFEXITED(ended) ? WEXITSTATUS(ended) : 128 + WTERMSIG(ended));
    ++done_;
    if (terminal_.isTerminal()) std::cerr << "\r" << done_ << " of " << fleet_.count << std::flush;
  }

  const Fleet& fleet_;
  const std::string script_;
  const std::string home_;
  const Terminal terminal_{STDERR_FILENO};
  std::vector<Device> devices_;
  int started_ = 0;
  int done_ = 0;
  int status_ = 0;
};

}  // namespace

int runFleet(const Fleet& fleet) {
  const testing::TemporaryDirectory scratch;
  const std::string script = scriptFile(fleet, scratch);
  raiseDescriptorLimit();
  // Not a window for each of them.
  setenv("QT_QPA_PLATFORM", "offscreen", 1);
  return Running(fleet, script, fleet.home.empty() ? scratch.path() : fleet.home).run();
}

}  // namespace kifo::tool
