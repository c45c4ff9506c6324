#pragma once

#include <sys/types.h>

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace kifo::testing {

/// A program that a test or a demo starts, such as a message bus or a display server. The kernel
/// ends it when the test ends or crashes.
///
///     ChildProgram child;
///     child.start({"dbus-daemon", "--print-address"});
///     const std::string address = child.readLine();
///
/// It is started by posix_spawn, for the thread sanitizer cannot follow a fork of a process with
/// threads.
///
/// **Threading:** externally synchronised. **Errors:** a program that cannot be started has no
/// process and no output. A wait ends after 20 s without output.
class ChildProgram {
 public:
  using Environment = std::map<std::string, std::string>;
  /// What happens with its standard error. A program that writes much there would block when it is
  /// kept.
  enum class Errors { dropped, kept };

  ChildProgram() = default;
  ~ChildProgram() { end(); }
  ChildProgram(const ChildProgram&) = delete;
  ChildProgram& operator=(const ChildProgram&) = delete;

  /// Starts the program `words[0]` with the other words as arguments. `changes` are environment
  /// variables to set; an empty value removes one.
  void start(const std::vector<std::string>& words, const Environment& changes = {},
             Errors errors = Errors::dropped);

  /// The next line of its output; empty when it ends before.
  std::string readLine();
  /// Its whole output, once it has ended.
  std::string readAll();
  /// Its whole standard error, once it has ended, where that is kept.
  std::string readErrors();
  /// Waits for `count` more bytes of output; false when it ends before.
  bool awaitOutput(std::size_t count);

  [[nodiscard]] pid_t process() const { return process_; }

  /// Waits until it ends by itself. Its exit status; none when a signal ended it or it does not
  /// end.
  std::optional<int> wait();
  /// Sends SIGTERM and waits; kills it when it does not end.
  void end();
  /// Sends SIGKILL and waits.
  void kill();

 private:
  /// The reading end of a pipe, and what was read from it and not yet returned.
  struct Stream {
    int end = -1;
    std::string text;

    /// Waits for more; false when there is none.
    bool read();
    std::string readAll();
    void close();
  };

  /// Waits for its end, at most 20 s.
  std::optional<int> reap();

  pid_t process_ = -1;
  Stream output_;
  Stream errors_;
};

}  // namespace kifo::testing
