#include <malloc.h>
#include <unistd.h>

#include <fstream>
#include <iterator>

#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopUpWindow.h"
#include "bench/Table.h"
#include "bench/popups/PlainOverlay.h"
#include "bench/popups/PopupBenches.h"
#include "bench/popups/PopupStand.h"

namespace kifo::bench {
namespace {

constexpr int kWarmUp = 500;
constexpr int kCycles = 10000;
constexpr int kFadedCycles = 500;

/// KiB.
long resident() {
  std::ifstream file("/proc/self/statm");
  long whole = 0;
  long pages = 0;
  file >> whole >> pages;
  return pages * sysconf(_SC_PAGESIZE) / 1024;
}

/// KiB that the program holds, whatever the allocator keeps beside them.
long allocated() {
  const auto info = mallinfo2();
  return static_cast<long>((info.uordblks + info.hblkhd) / 1024);
}

struct Memory {
  long resident;
  long allocated;

  static Memory now() { return {bench::resident(), bench::allocated()}; }
};

std::string grown(const Memory& before) {
  const Memory now = Memory::now();
  return "resident " + std::to_string(now.resident - before.resident) + " KiB, allocated " +
         std::to_string(now.allocated - before.allocated) + " KiB";
}

void cycle(PopupStand& stand, int number) {
  const PopupType kind =
      PopupStand::kinds[static_cast<std::size_t>(number) % std::size(PopupStand::kinds)];
  PopupStand::close(stand.open(kind, PopupStand::campaign(kind)));
}

void measure(PopupStand& stand, const std::string& what, int cycles, const std::string& beside) {
  for (int i = 0; i < kWarmUp; ++i) cycle(stand, i);
  const Memory before = Memory::now();
  for (int i = 0; i < cycles; ++i) cycle(stand, i);
  row(what, grown(before), beside);
}

/// What Qt's own widgets leave behind in as many cycles.
void measureBare(PopupStand& stand) {
  PopUpWindow* popup = stand.open(PopupType::survey, PopupStand::campaign(PopupType::survey));
  popup->hide();
  const auto overlay = [&] {
    auto* shown = new PlainOverlay(popup, &stand.window());
    shown->show();
    shown->raise();
    stand.application().frameOf(PlainOverlay::name);
    shown->deleteLater();
    WatchedApplication::spinUntilGone(shown);
  };
  for (int i = 0; i < kWarmUp; ++i) overlay();
  const Memory before = Memory::now();
  for (int i = 0; i < kCycles; ++i) overlay();
  row("the floor: bare Qt widgets", grown(before), "");
  PopupStand::close(popup);
}

}  // namespace

void cyclesBench() {
  section("what " + std::to_string(kCycles) + " popups of all kinds leave behind, after " +
          std::to_string(kWarmUp) + " to warm up");
  PopUpOptions options;
  options.reducedMotion = true;
  PopupStand stand(options, {414, 800});
  measure(stand, "opened, painted, closed", kCycles, "wanted < 1024 KiB");
  options.reducedMotion = false;
  options.durations.fade = std::chrono::milliseconds(20);
  stand.setOptions(options);
  measure(stand, std::to_string(kFadedCycles) + " with a fade", kFadedCycles, "");
  measureBare(stand);
}

}  // namespace kifo::bench
