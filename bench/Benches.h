#pragma once

namespace kifo::bench {

void callerBench();     ///< What sending an event costs its caller.
void storeBench();      ///< What a stored copy costs, beside the same statements by hand.
void drainBench();      ///< How fast stored requests go out, beside bare statements and posts.
void footprintBench();  ///< Start, memory, threads, wake-ups, the library's size.
void shutdownBench();   ///< How long stopping takes.

}  // namespace kifo::bench
