// A process that ends badly, in one of several ways, on the real platform. Its exit status is 0
// when nothing stood in the way of its end.
#include <sys/wait.h>
#include <unistd.h>

#include <functional>
#include <future>
#include <map>
#include <string>
#include <thread>

#include "Kifo_iOS_Common_Kit/core/Console.h"
#include "platform/linux/LinuxPlatform.h"

namespace kifo {
namespace {

std::shared_ptr<const Platform> platform() {
  return Platform::current();
}

[[noreturn]] void never() {
  for (;;) pause();
}

/// Posts a task that never returns, and comes back when it has begun.
void blockForEver(SerialQueue& queue) {
  std::promise<void> begun;
  queue.post([&begun] {
    begun.set_value();
    never();
  });
  begun.get_future().wait();
}

void request(
    const std::string& url, std::function<void()> done = [] {}) {
  platform()->http->send([url] { return HttpRequest{.url = url}; },
                         [done = std::move(done)](const HttpAnswer&) { done(); });
}

void forkAndExit(const std::string& url) {
  request(url);
  platform()->mainQueue->sync([] {});
  const pid_t child = fork();
  if (child == 0) std::exit(7);
  int status = 0;
  waitpid(child, &status, 0);
  if (WEXITSTATUS(status) != 7) std::_Exit(1);
}

void printFromThreads(const std::string&) {
  for (int index = 0; index < 4; ++index) {
    std::thread([] {
      for (;;) Console::print("Kifo Child:", "still here");
    }).detach();
  }
  for (int index = 0; index < 2000; ++index) Console::print("Kifo Child:", "main");
}

const std::map<std::string, std::function<void(const std::string&)>> kWays = {
    {"request-under-way", [](const std::string& url) { request(url); }},
    {"completion-never-returns",
     [](const std::string& url) {
       std::promise<void> begun;
       request(url, [&begun] {
         begun.set_value();
         never();
       });
       begun.get_future().wait();
     }},
    {"main-task-never-returns", [](const std::string&) { blockForEver(*platform()->mainQueue); }},
    {"answer-task-never-returns",
     [](const std::string&) { blockForEver(*platform()->answerQueue); }},
    {"set-and-exit",
     [](const std::string&) { platform()->userDefaults->setValue("key", std::string("kept")); }},
    {"print-and-exit",
     [](const std::string&) {
       for (int index = 0; index < 1000; ++index) {
         Console::print("Kifo Child:", std::to_string(index));
       }
     }},
    {"fork-and-exit", forkAndExit},
    {"print-while-exiting", printFromThreads},
};

}  // namespace
}  // namespace kifo

/// WAY DIRECTORY [ARGUMENT]
int main(int count, char** texts) {
  if (count < 3 || !kifo::kWays.contains(texts[1])) return 64;
  const std::string directory = texts[2];
  kifo::Platform::install(kifo::makeLinuxPlatform({.documentsDirectory = directory}));
  kifo::kWays.at(texts[1])(count > 3 ? texts[3] : directory);
  return 0;
}
