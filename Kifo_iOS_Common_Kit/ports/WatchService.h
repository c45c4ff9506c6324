#pragma once

#include <functional>
#include <string>

#include "Kifo_iOS_Common_Kit/ports/Export.h"

namespace kifo {

/// Lets tools of the same user look into this process while it runs. A tool that attaches gets
/// lines of text and can ask for two things: the state as it is now, and every line that is
/// published from now on. It can change nothing.
///
/// **Threading:** thread-safe. The functions of `Source` are called on the service's own thread.
/// **Errors:** a tool that reads too slowly loses lines, and is told how many.
class KIFO_EXPORT WatchService {
 public:
  using Reply = std::function<void(std::string line)>;

  /// What the SDK supplies. Lines have no line break.
  struct Source {
    std::function<std::string()> greeting;          ///< The first line for everyone who attaches.
    std::function<void(Reply reply)> state;         ///< Replies with one line, on any thread.
    std::function<void(bool isFollowed)> followed;  ///< Whether anyone follows changed.
  };

  virtual ~WatchService() = default;

  /// Lets tools attach until `close`; "" or why they cannot. Open already, it does nothing.
  virtual std::string open(Source source) = 0;
  /// Sends a line to those that follow. Never waits for them.
  virtual void publish(std::string line) = 0;
  /// Disconnects all who are attached; `open` can be called again.
  virtual void close() = 0;
};

}  // namespace kifo
