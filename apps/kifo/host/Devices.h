#pragma once

#include <string>

namespace kifo::tool {

/// A script run as many devices at once, for load on a server of one's own.
struct Fleet {
  std::string script;  ///< A file, or "-" for standard input.
  std::string home;    ///< Device n keeps what it keeps in the folder "n" of it.
  bool writesDecisions = false;
  int count = 1;
  double rate = 10.0;  ///< Devices that are started in a second.
};

/// Runs each device as a process of this program, since a process has one SDK. Their lines come out
/// as they come, each with the number of its device as the first member. The highest exit status of
/// any of them.
///
/// **Threading:** one thread, before any other is made.
/// **Errors:** throws `std::runtime_error` when no process can be started.
int runFleet(const Fleet& fleet);

}  // namespace kifo::tool
