// What sending events costs:
//   kifo_event_bench [caller] [store] [drain] [footprint] [shutdown]
#include "bench/Benches.h"
#include "bench/Runner.h"

int main(int argc, char** argv) {
  using namespace kifo::bench;
  return runBenches(argc, argv,
                    {{"caller", callerBench},
                     {"store", storeBench},
                     {"drain", drainBench},
                     {"footprint", footprintBench},
                     {"shutdown", shutdownBench}});
}
