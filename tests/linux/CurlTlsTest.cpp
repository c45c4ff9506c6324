// The transport over TLS: whom it trusts and where it lets itself be led.
#include <curl/curl.h>

#include <fstream>
#include <map>

#include "platform/linux/http/CurlTransport.h"
#include "testing/server/LocalServer.h"
#include "tests/support/Certificate.h"
#include "tests/support/Sockets.h"

namespace kifo::testing {
namespace {

/// A server with one certificate.
class SecureServer {
 public:
  explicit SecureServer(const Certificate& certificate)
      : server_({.certificate = certificate.pem(), .privateKey = certificate.keyPem()}) {
    server_.respond("/good", [](const ReceivedRequest&) {
      return LocalServer::Answer{.body = "over TLS", .contentType = "text/plain"};
    });
    server_.respond("/down", [this](const ReceivedRequest&) {
      const std::string plain = "http" + server_.uri().substr(std::string("https").size());
      return LocalServer::Answer{.status = 302, .headers = {{"Location", plain + "/good"}}};
    });
    server_.start();
  }

  HttpAnswer fetch(CurlTransport& transport, const std::string& path) const {
    return answerTo(transport, {.url = server_.uri() + path}).get();
  }

 private:
  LocalServer server_;
};

class CurlTlsTest : public FakesTest {
 protected:
  CurlTlsTest() { std::ofstream(authorities_) << authority_.pem(); }

  HttpAnswer fetchFrom(const Certificate& certificate, CurlTransport& transport) {
    return SecureServer(certificate).fetch(transport, "/good");
  }

  const std::string authorities_ = fake_.directory.file("authorities.pem");
  const Certificate authority_{{.isAuthority = true}};
  const Certificate good_{{}, &authority_};
  CurlTransport trusting_{CurlTransportOptions{.certificateAuthorities = authorities_}};
};

TEST_F(CurlTlsTest, AServerIsBelievedOnlyIfAnAuthorityVouchesForItsAddressToday) {
  EXPECT_EQ(fetchFrom(good_, trusting_).body, "over TLS");
  CurlTransport strict;  // trusts the system's authorities
  EXPECT_EQ(fetchFrom(good_, strict).error.value().code, CURLE_PEER_FAILED_VERIFICATION);
  const std::map<std::string, Certificate> bad = [&] {
    std::map<std::string, Certificate> made;
    made.try_emplace("signs itself", Certificate::Contents{});
    made.try_emplace("of another address", Certificate::Contents{.names = "IP:127.0.0.2"},
                     &authority_);
    made.try_emplace("of another name", Certificate::Contents{.names = "DNS:example.com"},
                     &authority_);
    made.try_emplace("expired", Certificate::Contents{.validUntil = -60}, &authority_);
    made.try_emplace("not yet valid", Certificate::Contents{.validFrom = 600}, &authority_);
    return made;
  }();
  for (const auto& [fault, certificate] : bad) {
    const auto answer = fetchFrom(certificate, trusting_);
    ASSERT_TRUE(answer.error) << fault;
    EXPECT_EQ(answer.error->code, CURLE_PEER_FAILED_VERIFICATION) << fault;
    EXPECT_EQ(answer.body, "") << fault;
  }
}

TEST_F(CurlTlsTest, ARedirectDownToHttpIsRefused) {
  const SecureServer server(good_);
  EXPECT_EQ(server.fetch(trusting_, "/down").error.value().code, CURLE_UNSUPPORTED_PROTOCOL);
}

}  // namespace
}  // namespace kifo::testing
