// What a popup costs, on Qt's offscreen platform unless the caller chose one:
//   kifo_popup_bench [frame] [stretch] [wide] [choosing] [cycles] [quick-frame] …
#include <QByteArray>

#include "bench/Runner.h"
#include "bench/popups/PopupBenches.h"

int main(int argc, char** argv) {
  using namespace kifo::bench;
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  if (qEnvironmentVariableIsEmpty("QT_QUICK_BACKEND")) qputenv("QT_QUICK_BACKEND", "software");
  return runBenches(argc, argv,
                    {{"frame", frameBench},
                     {"stretch", stretchBench},
                     {"wide", wideStretchBench},
                     {"choosing", choosingBench},
                     {"cycles", cyclesBench},
                     {"quick-load", quickLoadBench},
                     {"quick-frame", quickFrameBench},
                     {"quick-stretch", quickStretchBench},
                     {"quick-cycles", quickCyclesBench}});
}
