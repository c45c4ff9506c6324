#include "testing/simulation/Script.h"

#include <algorithm>
#include <array>
#include <random>

namespace kifo::testing::simulation {
namespace {

struct Choice {
  Kind kind;
  std::string_view name;
  std::uint32_t weight;
};

constexpr std::array kChoices{Choice{Kind::runTask, "runTask", 400},
                              Choice{Kind::runAll, "runAll", 30},
                              Choice{Kind::passTime, "passTime", 35},
                              Choice{Kind::sendEvent, "sendEvent", 130},
                              Choice{Kind::sendOddEvent, "sendOddEvent", 8},
                              Choice{Kind::enterPage, "enterPage", 20},
                              Choice{Kind::leavePage, "leavePage", 5},
                              Choice{Kind::sendOther, "sendOther", 20},
                              Choice{Kind::changeIdentity, "changeIdentity", 15},
                              Choice{Kind::initialize, "initialize", 5},
                              Choice{Kind::closeScreen, "closeScreen", 4},
                              Choice{Kind::answerRequest, "answerRequest", 150},
                              Choice{Kind::answerAll, "answerAll", 10},
                              Choice{Kind::answerToken, "answerToken", 15},
                              Choice{Kind::changeNetwork, "changeNetwork", 45},
                              Choice{Kind::changeCampaigns, "changeCampaigns", 15},
                              Choice{Kind::changeConsent, "changeConsent", 6},
                              Choice{Kind::pausePopups, "pausePopups", 12},
                              Choice{Kind::changeGate, "changeGate", 10},
                              Choice{Kind::showPopup, "showPopup", 25},
                              Choice{Kind::answerPopup, "answerPopup", 25},
                              Choice{Kind::breakDisk, "breakDisk", 8},
                              Choice{Kind::lockTable, "lockTable", 8},
                              Choice{Kind::mendDisk, "mendDisk", 15},
                              Choice{Kind::shutDown, "shutDown", 6},
                              Choice{Kind::kill, "kill", 6},
                              Choice{Kind::powerFails, "powerFails", 6}};

constexpr std::uint32_t totalWeight() {
  std::uint32_t sum = 0;
  for (const Choice& choice : kChoices) sum += choice.weight;
  return sum;
}

/// mt19937_64's own numbers are the same everywhere; the library's distributions are not.
Kind chosen(std::uint64_t number) {
  auto left = static_cast<std::uint32_t>(number % totalWeight());
  for (const Choice& choice : kChoices) {
    if (left < choice.weight) return choice.kind;
    left -= choice.weight;
  }
  return Kind::runTask;
}

using Fails = std::function<bool(const Script&)>;

/// Leaves out runs of `size` operations wherever that still fails. Whether any was left out.
bool leaveOut(Script& script, std::size_t size, const Fails& fails) {
  bool isShorter = false;
  for (std::size_t end = script.size(); end > 0;) {
    const std::size_t begin = end > size ? end - size : 0;
    Script without(script.begin(), script.begin() + static_cast<std::ptrdiff_t>(begin));
    without.insert(without.end(), script.begin() + static_cast<std::ptrdiff_t>(end), script.end());
    if (fails(without)) {
      script = std::move(without);
      isShorter = true;
    }
    end = std::min(begin, script.size());
  }
  return isShorter;
}

void makeArgumentsSmall(Script& script, const Fails& fails) {
  for (std::size_t place = 0; place < script.size(); ++place) {
    for (const std::uint32_t smaller : {0U, 1U, script[place].argument % 16}) {
      if (script[place].argument <= smaller) break;
      Script changed = script;
      changed[place].argument = smaller;
      if (!fails(changed)) continue;
      script = std::move(changed);
      break;
    }
  }
}

}  // namespace

Script randomScript(std::uint64_t seed, std::size_t length) {
  std::mt19937_64 random(seed);
  Script script;
  while (script.size() < length) {
    const std::uint64_t number = random();
    script.push_back({chosen(number >> 32), static_cast<std::uint32_t>(number)});
  }
  return script;
}

std::string text(const Script& script) {
  std::string lines;
  for (const Operation& operation : script) {
    const auto choice = std::ranges::find(kChoices, operation.kind, &Choice::kind);
    lines.append("{Kind::").append(choice->name).append(", ");
    lines.append(std::to_string(operation.argument)).append("},\n");
  }
  return lines;
}

Script shrunk(Script script, const Fails& fails) {
  for (std::size_t size = std::max<std::size_t>(script.size() / 2, 1);;) {
    const bool isShorter = leaveOut(script, size, fails);
    if (size == 1 && !isShorter) break;
    if (!isShorter || size > script.size()) size = std::max<std::size_t>(size / 2, 1);
  }
  makeArgumentsSmall(script, fails);
  return script;
}

}  // namespace kifo::testing::simulation
