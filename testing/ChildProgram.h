#pragma once

#include <sys/types.h>

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace kifo::testing {

/// A program of the system that runs beside a test or a demo, and ends with it, even when that
/// crashes: a message bus, a screen, a notification service.
///
/// It is spawned, never forked: a fork of a process with threads is one that the thread sanitizer
/// cannot follow.
///
/// What it complains of goes nowhere.
///
/// **Threading:** externally synchronised. **Errors:** one that cannot be started is not running and
/// says nothing.
class ChildProgram {
 public:
  using Environment = std::map<std::string, std::string>;

  ChildProgram() = default;
  ~ChildProgram() { end(); }
  ChildProgram(const ChildProgram&) = delete;
  ChildProgram& operator=(const ChildProgram&) = delete;

  /// Starts `words`, the program first, with these variables set; an empty text takes one away.
  void start(const std::vector<std::string>& words, const Environment& changes = {});

  /// The next line that it prints, or nothing when it ends or takes longer than 20 s: programs print
  /// one when they are ready.
  std::string readLine();
  /// Everything that it prints until it ends.
  std::string readAll();

  [[nodiscard]] pid_t process() const { return process_; }

  /// Asks it to end and waits; after 20 s it is killed.
  void end();

 private:
  /// Up to `end`, or to the end of what it prints.
  std::string readUntil(std::optional<char> end);

  pid_t process_ = -1;
  int output_ = -1;
};

}  // namespace kifo::testing
