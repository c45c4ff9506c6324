#include "platform/linux/LinuxConsole.h"

#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <climits>
#include <thread>
#include <utility>

#include "Kifo_iOS_Common_Kit/ports/Mutex.h"

namespace kifo {
namespace {

constexpr std::size_t kLimit = 1u << 20;  // bytes that wait
const SerialQueue::Duration kRetry(0.05);
const SerialQueue::Duration kDestructionBound(0.1);

/// Writes to a descriptor that may be a pipe nobody reads.
class Output {
 public:
  enum class Outcome { written, full, gone };

  explicit Output(int descriptor) : descriptor_(descriptor) {
    struct stat status {};
    isFile_ = fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode);
  }

  /// Takes what was written off the start of `text`; waits for `milliseconds` at most.
  Outcome write(std::string& text, int milliseconds) const {
    pollfd polled{descriptor_, POLLOUT, 0};
    if (poll(&polled, 1, milliseconds) <= 0) return Outcome::full;
    // Writing where the reader has gone would raise a signal in the host.
    if ((polled.revents & (POLLERR | POLLHUP | POLLNVAL)) != 0) return Outcome::gone;
    const ssize_t count = ::write(descriptor_, text.data(), portionOf(text));
    if (count < 0) return errno == EINTR || errno == EAGAIN ? Outcome::full : Outcome::gone;
    text.erase(0, static_cast<std::size_t>(count));
    return Outcome::written;
  }

 private:
  /// Whole lines of at most PIPE_BUF bytes: a pipe that can be written to takes them in one piece.
  std::size_t portionOf(const std::string& text) const {
    if (isFile_ || text.size() <= PIPE_BUF) return text.size();
    const auto line = text.rfind('\n', PIPE_BUF - 1);
    return line == std::string::npos ? PIPE_BUF : line + 1;
  }

  const int descriptor_;
  bool isFile_ = false;
};

}  // namespace

class LinuxConsole::Buffer : public std::enable_shared_from_this<Buffer> {
 public:
  Buffer(std::shared_ptr<SerialQueue> queue, int descriptor)
      : queue_(std::move(queue)), output_(descriptor) {}

  void write(const std::string& line);
  void finish(SerialQueue::Duration bound);

 private:
  using Clock = std::chrono::steady_clock;

  void append(const std::string& line) KIFO_REQUIRES(mutex_);
  void flush();
  bool tryDrain(Clock::time_point until);
  bool drain(Clock::time_point until) KIFO_REQUIRES(writing_);
  bool takeMore() KIFO_REQUIRES(writing_);

  const std::shared_ptr<SerialQueue> queue_;
  const Output output_;

  Mutex writing_;
  /// Taken out of waiting_ and not yet written.
  std::string pending_ KIFO_GUARDED_BY(writing_);

  Mutex mutex_;
  std::string waiting_ KIFO_GUARDED_BY(mutex_);
  std::size_t dropped_ KIFO_GUARDED_BY(mutex_) = 0;
  bool scheduled_ KIFO_GUARDED_BY(mutex_) = false;
  bool finished_ KIFO_GUARDED_BY(mutex_) = false;
};

void LinuxConsole::Buffer::write(const std::string& line) {
  MutexLock lock(mutex_);
  append(line);
  const bool direct = finished_;
  const bool schedules = !direct && !std::exchange(scheduled_, true);
  lock.unlock();
  if (schedules) queue_->post([self = shared_from_this()] { self->flush(); });
  if (direct) tryDrain(Clock::now());
}

void LinuxConsole::Buffer::append(const std::string& line) {
  if (dropped_ > 0 || waiting_.size() + line.size() >= kLimit) {
    ++dropped_;
  } else {
    waiting_.append(line).push_back('\n');
  }
}

/// On the queue.
void LinuxConsole::Buffer::flush() {
  const MutexLock lock(writing_);
  if (drain(Clock::now())) return;
  queue_->schedule(kRetry, [self = shared_from_this()] { self->flush(); });
}

void LinuxConsole::Buffer::finish(SerialQueue::Duration bound) {
  const auto until = Clock::now() + std::chrono::duration_cast<Clock::duration>(bound);
  {
    const MutexLock lock(mutex_);
    finished_ = true;
  }
  // At the end of the process the thread that writes may hang: it is not waited for beyond `until`.
  while (!tryDrain(until) && Clock::now() < until) {
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
}

/// False, and nothing written, while another thread writes.
bool LinuxConsole::Buffer::tryDrain(Clock::time_point until) {
  if (!writing_.try_lock()) return false;
  drain(until);
  writing_.unlock();
  return true;
}

/// Writes until nothing waits or `until` has come; false then.
bool LinuxConsole::Buffer::drain(Clock::time_point until) {
  while (takeMore()) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(until - Clock::now()).count();
    switch (output_.write(pending_, static_cast<int>(std::clamp<long long>(left, 0, INT_MAX)))) {
      case Output::Outcome::written:
        break;
      case Output::Outcome::gone:
        pending_.clear();
        break;
      case Output::Outcome::full:
        return false;
    }
  }
  return true;
}

/// Whether there is something to write. If not, the next line schedules the next flush.
bool LinuxConsole::Buffer::takeMore() {
  if (!pending_.empty()) return true;
  const MutexLock lock(mutex_);
  pending_ = std::exchange(waiting_, {});
  if (const auto count = std::exchange(dropped_, 0); count > 0) {
    pending_ += "… " + std::to_string(count) + " lines dropped\n";
  }
  scheduled_ = !pending_.empty();
  return scheduled_;
}

LinuxConsole::LinuxConsole(std::shared_ptr<SerialQueue> queue, int descriptor)
    : buffer_(std::make_shared<Buffer>(std::move(queue), descriptor)) {}

LinuxConsole::~LinuxConsole() {
  buffer_->finish(kDestructionBound);
}

void LinuxConsole::write(std::string line) {
  buffer_->write(line);
}

void LinuxConsole::finish(SerialQueue::Duration bound) {
  buffer_->finish(bound);
}

}  // namespace kifo
