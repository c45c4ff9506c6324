// Answers that are made to fill the memory or to take for ever.
#include <curl/curl.h>
#include <gmock/gmock.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>
#include <zlib.h>

#include <functional>
#include <future>
#include <thread>

#include "platform/linux/http/CurlTransport.h"
#include "testing/FakePlatform.h"

namespace kifo::testing {
namespace {

constexpr auto kBound = std::chrono::seconds(60);
/// More than any answer may take, and less than would hurt a test machine.
constexpr std::size_t kEnough = 256u << 20;

/// A server whose answer is whatever a function writes, to one connection.
class RawServer {
 public:
  /// Writes a piece of the answer; false when the client has gone.
  using Write = std::function<bool(const std::string& piece)>;

  explicit RawServer(std::function<void(const Write&)> answer)
      : socket_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    bind(socket_, reinterpret_cast<sockaddr*>(&address), length);
    listen(socket_, 1);
    getsockname(socket_, reinterpret_cast<sockaddr*>(&address), &length);
    port_ = ntohs(address.sin_port);
    thread_ = std::thread([this, answer = std::move(answer)] { serve(answer); });
  }
  ~RawServer() {
    shutdown(socket_, SHUT_RDWR);
    thread_.join();
    close(socket_);
  }
  RawServer(const RawServer&) = delete;
  RawServer& operator=(const RawServer&) = delete;

  [[nodiscard]] std::string uri() const { return "http://127.0.0.1:" + std::to_string(port_); }
  /// How much the client took; after the connection's end.
  [[nodiscard]] std::size_t written() const { return written_; }

 private:
  void serve(const std::function<void(const Write&)>& answer) {
    const int client = accept(socket_, nullptr, nullptr);
    if (client < 0) return;
    char request[4096];
    [[maybe_unused]] const auto got = recv(client, request, sizeof request, 0);
    answer([&](const std::string& piece) {
      const auto sent = send(client, piece.data(), piece.size(), MSG_NOSIGNAL);
      if (sent > 0) written_ += static_cast<std::size_t>(sent);
      return sent == static_cast<ssize_t>(piece.size()) && written_ < kEnough;
    });
    close(client);
  }

  const int socket_;
  int port_ = 0;
  std::atomic<std::size_t> written_ = 0;
  std::thread thread_;
};

HttpAnswer fetch(const std::string& url, double timeout) {
  CurlTransport transport;
  std::promise<HttpAnswer> promise;
  auto answer = promise.get_future();
  transport.send([&] { return HttpRequest{.url = url, .timeout = timeout}; },
                 [&](HttpAnswer given) { promise.set_value(std::move(given)); });
  EXPECT_EQ(answer.wait_for(kBound), std::future_status::ready);
  return answer.get();
}

std::string gzipOfZeros(std::size_t size) {
  z_stream stream{};
  deflateInit2(&stream, Z_BEST_COMPRESSION, Z_DEFLATED, 15 + 16, 9, Z_DEFAULT_STRATEGY);
  std::string zeros(1u << 20, '\0');
  std::string packed(size / 512, '\0');
  stream.next_out = reinterpret_cast<Bytef*>(packed.data());
  stream.avail_out = static_cast<uInt>(packed.size());
  for (std::size_t done = 0; done < size; done += zeros.size()) {
    stream.next_in = reinterpret_cast<Bytef*>(zeros.data());
    stream.avail_in = static_cast<uInt>(zeros.size());
    deflate(&stream, done + zeros.size() < size ? Z_NO_FLUSH : Z_FINISH);
  }
  packed.resize(stream.total_out);
  deflateEnd(&stream);
  return packed;
}

struct Hostility {
  const char* name;
  std::function<void(const RawServer::Write&)> answer;
  double timeout;  ///< Seconds; long where the answer's size has to end it.
};

void PrintTo(const Hostility& hostility, std::ostream* out) {
  *out << hostility.name;
}

void endlessly(const RawServer::Write& write, const std::string& piece) {
  while (write(piece)) {
  }
}

const std::vector<Hostility> kHostilities = {
    {"EndlessBody",
     [](const auto& write) {
       write("HTTP/1.1 200 OK\r\n\r\n");
       endlessly(write, std::string(1u << 16, 'x'));
     },
     600.0},
    {"EndlessHeaders",
     [](const auto& write) {
       write("HTTP/1.1 200 OK\r\n");
       endlessly(write, "X-Header: " + std::string(1000, 'x') + "\r\n");
     },
     600.0},
    {"EndlessHeaderLine",
     [](const auto& write) {
       write("HTTP/1.1 200 OK\r\nX-Header: ");
       endlessly(write, std::string(1u << 16, 'x'));
     },
     600.0},
    {"EndlessInterimAnswers",
     [](const auto& write) {
       endlessly(write,
                 "HTTP/1.1 103 Early Hints\r\nLink: <" + std::string(1000, 'x') + ">\r\n\r\n");
     },
     600.0},
    {"CompressionBomb",
     [](const auto& write) {
       write("HTTP/1.1 200 OK\r\nContent-Encoding: gzip\r\n\r\n" + gzipOfZeros(1u << 30));
     },
     600.0},
    {"Drip",
     [](const auto& write) {
       write("HTTP/1.1 200 OK\r\nContent-Length: 100000\r\n\r\n");
       while (write("x")) std::this_thread::sleep_for(std::chrono::milliseconds(1));
     },
     0.2},
};

class HostileServerTest : public ::testing::TestWithParam<Hostility> {
 protected:
  const InstalledFakePlatform fake_;
};

TEST_P(HostileServerTest, TakesNeitherMemoryNorTimeBeyondTheirBounds) {
  std::size_t written = 0;
  {
    const RawServer server(GetParam().answer);
    const HttpAnswer answer = fetch(server.uri(), GetParam().timeout);
    EXPECT_TRUE(answer.error);
    EXPECT_EQ(answer.body, "");
    written = server.written();
  }
  EXPECT_LT(written, kEnough) << "all that was offered was taken";
}

INSTANTIATE_TEST_SUITE_P(Answers, HostileServerTest, ::testing::ValuesIn(kHostilities),
                         [](const auto& each) { return each.param.name; });

TEST(HostileHeadersTest, TenThousandSmallHeadersAreNoReasonToLoseTheAnswer) {
  const InstalledFakePlatform fake;
  const RawServer server([](const auto& write) {
    std::string head = "HTTP/1.1 200 OK\r\n";
    for (int index = 0; index < 10000; ++index) head += "X-" + std::to_string(index) + ": y\r\n";
    write(head + "Content-Length: 2\r\n\r\nok");
  });
  const HttpAnswer answer = fetch(server.uri(), 60.0);
  EXPECT_EQ(answer.error, std::nullopt);
  EXPECT_EQ(answer.body, "ok");
}

}  // namespace
}  // namespace kifo::testing
