#pragma once

#include <sys/types.h>

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace kifo::testing {

/// A program that runs beside a test or a demo, and ends with it, even when that crashes: a message
/// bus, a screen, a process that is to be killed.
///
///     ChildProgram child;
///     child.start({"dbus-daemon", "--print-address"});
///     const std::string address = child.readLine();
///
/// It is spawned, never forked: a fork of a process with threads is one that the thread sanitizer
/// cannot follow.
///
/// **Threading:** externally synchronised. **Errors:** one that cannot be started is not running
/// and says nothing; one that gives no sign of life for 20 s is given up.
class ChildProgram {
 public:
  using Environment = std::map<std::string, std::string>;
  /// What becomes of what it complains of. One that runs for long would block on what is kept.
  enum class Errors { dropped, kept };

  ChildProgram() = default;
  ~ChildProgram() { end(); }
  ChildProgram(const ChildProgram&) = delete;
  ChildProgram& operator=(const ChildProgram&) = delete;

  /// Starts `words`, the program first, with these variables set; an empty text takes one away.
  void start(const std::vector<std::string>& words, const Environment& changes = {},
             Errors errors = Errors::dropped);

  /// The next line that it prints, or nothing when it ends before: programs print one when they are
  /// ready.
  std::string readLine();
  /// Everything that it prints until it ends.
  std::string readAll();
  /// Everything that it complains of until it ends, where that is kept.
  std::string readErrors();
  /// Waits until it has printed `count` more bytes; false when it ends before.
  bool awaitOutput(std::size_t count);

  [[nodiscard]] pid_t process() const { return process_; }

  /// Waits until it ends by itself: its exit status, or nothing when a signal ended it or it does
  /// not end.
  std::optional<int> wait();
  /// Asks it to end and waits; if it does not, it is killed.
  void end();
  /// Ends it in the middle of whatever it does.
  void kill();

 private:
  /// The reading end of a pipe, and what has been read and not yet been asked for.
  struct Stream {
    int end = -1;
    std::string text;

    /// Waits for more; false when there is none.
    bool read();
    std::string readAll();
    void close();
  };

  /// Its status once it has ended, within the patience there is.
  std::optional<int> reap();

  pid_t process_ = -1;
  Stream output_;
  Stream errors_;
};

}  // namespace kifo::testing
