#pragma once

#include <string>
#include <string_view>

#include <httplib.h>

namespace kifo::testing {

/// One accepted connection, as the HTTP library reads and writes it.
///
/// The library takes request lines of 8 KiB at most, and an event's query carries the whole event.
/// So the connection reads the request line itself, hands the library the line without its query,
/// and keeps the target for `target`.
///
/// **Threading:** used by the one worker that serves it. **Ownership:** does not own the socket.
class HttpConnection : public httplib::Stream {
 public:
  static constexpr std::size_t maximumRequestLine = 4u << 20;

  explicit HttpConnection(socket_t socket) : socket_(socket) {}

  /// Waits for the first byte of the next request; false when none comes within `seconds` or the
  /// other side has gone.
  bool awaitRequest(int seconds);

  /// Reads the request line; false when it does not come or is too long.
  bool readRequestLine();

  /// Path and query of the request under way, as they were written.
  [[nodiscard]] const std::string& target() const { return target_; }

  /// Reads exactly `size` bytes into `text`.
  bool readExactly(std::size_t size, std::string& text);

  /// Ends the connection at once, both ways; what is written afterwards is lost.
  void cut();

  bool is_readable() const override;
  bool is_writable() const override;
  ssize_t read(char* data, size_t size) override;
  ssize_t write(const char* data, size_t size) override;
  void get_remote_ip_and_port(std::string& address, int& port) const override;
  void get_local_ip_and_port(std::string& address, int& port) const override;
  socket_t socket() const override { return socket_; }

 private:
  bool fill();
  std::string_view unread() const { return std::string_view(buffer_).substr(position_); }

  const socket_t socket_;
  std::string target_;
  std::string buffer_;  // Bytes received, read up to position_.
  std::size_t position_ = 0;
};

}  // namespace kifo::testing
