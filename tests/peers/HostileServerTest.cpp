// Answers that are made to fill the memory or to take for ever.

#include <thread>

#include "platform/linux/http/CurlTransport.h"
#include "tests/support/Sockets.h"

namespace kifo::testing {
namespace {

/// More than any answer may take, and less than would hurt a test machine.
constexpr std::size_t kEnough = 256u << 20;

struct Hostility {
  const char* name;
  std::string head;
  std::string piece;  ///< Follows without end; empty: the answer ends with the head.
  double timeout;     ///< Seconds; long where the answer's size has to end it.
  std::chrono::milliseconds pause{0};  ///< Between two pieces.
};

void PrintTo(const Hostility& hostility, std::ostream* out) {
  *out << hostility.name;
}

/// A server that answers one connection so.
class HostileServer {
 public:
  explicit HostileServer(Hostility answer)
      : answer_(std::move(answer)), thread_([this] { serve(); }) {}
  ~HostileServer() { end(); }
  HostileServer(const HostileServer&) = delete;
  HostileServer& operator=(const HostileServer&) = delete;

  HttpAnswer fetch() {
    CurlTransport transport;
    auto answer = answerTo(transport, {.url = socket_.uri(), .timeout = answer_.timeout});
    EXPECT_EQ(answer.wait_for(std::chrono::seconds(60)), std::future_status::ready);
    return answer.get();
  }
  /// Ends the server; how much the client took.
  std::size_t end() {
    socket_.endAccept();
    if (thread_.joinable()) thread_.join();
    return written_;
  }

 private:
  void serve() {
    const int client = socket_.accept();
    if (client < 0) return;
    char request[4096];
    [[maybe_unused]] const auto got = recv(client, request, sizeof request, 0);
    bool goesOn = write(client, answer_.head) && !answer_.piece.empty();
    while (goesOn) {
      std::this_thread::sleep_for(answer_.pause);
      goesOn = write(client, answer_.piece);
    }
    close(client);
  }
  /// False when the client has gone, or has taken more than it may.
  bool write(int client, const std::string& piece) {
    const auto sent = send(client, piece.data(), piece.size(), MSG_NOSIGNAL);
    if (sent > 0) written_ += static_cast<std::size_t>(sent);
    return sent == static_cast<ssize_t>(piece.size()) && written_ < kEnough;
  }

  const Hostility answer_;
  const ListeningSocket socket_;
  std::size_t written_ = 0;
  std::thread thread_;
};

const std::string kOk = "HTTP/1.1 200 OK\r\n";
const std::string kLong(1u << 16, 'x');

class HostileServerTest : public ::testing::TestWithParam<Hostility> {
 protected:
  const InstalledFakePlatform fake_;
};

TEST_P(HostileServerTest, TakesNeitherMemoryNorTimeBeyondTheirBounds) {
  HostileServer server(GetParam());
  const HttpAnswer answer = server.fetch();
  EXPECT_TRUE(answer.error);
  EXPECT_EQ(answer.body, "");
  EXPECT_LT(server.end(), kEnough) << "all that was offered was taken";
}

INSTANTIATE_TEST_SUITE_P(
    Answers, HostileServerTest,
    ::testing::Values(
        Hostility{"EndlessBody", kOk + "\r\n", kLong, 600.0},
        Hostility{"EndlessHeaders", kOk, "X-Header: " + std::string(1000, 'x') + "\r\n", 600.0},
        Hostility{"EndlessHeaderLine", kOk + "X-Header: ", kLong, 600.0},
        Hostility{"EndlessInterimAnswers", "",
                  "HTTP/1.1 103 Early Hints\r\nLink: <" + std::string(1000, 'x') + ">\r\n\r\n",
                  600.0},
        Hostility{"CompressionBomb",
                  kOk + "Content-Encoding: gzip\r\n\r\n" + gzipped(std::string(64u << 20, '\0')),
                  "", 600.0},
        Hostility{"Drip", kOk + "Content-Length: 100000\r\n\r\n", "x", 0.2,
                  std::chrono::milliseconds(1)}),
    [](const auto& each) { return each.param.name; });

TEST(HostileHeadersTest, TenThousandSmallHeadersAreNoReasonToLoseTheAnswer) {
  const InstalledFakePlatform fake;
  std::string head = kOk;
  for (int index = 0; index < 10000; ++index) head += "X-" + std::to_string(index) + ": y\r\n";
  HostileServer server({"", head + "Content-Length: 2\r\n\r\nok", "", 60.0});
  const HttpAnswer answer = server.fetch();
  EXPECT_EQ(answer.error, std::nullopt);
  EXPECT_EQ(answer.body, "ok");
}

}  // namespace
}  // namespace kifo::testing
