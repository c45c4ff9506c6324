// The transport over TLS: whom it trusts and where it lets itself be led.
#include <curl/curl.h>
#include <httplib.h>
#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/x509v3.h>

#include <cstdio>
#include <future>
#include <memory>
#include <string>
#include <thread>

#include "platform/linux/CurlTransport.h"
#include "testing/FakePlatform.h"

namespace kifo::testing {
namespace {

/// A certificate for 127.0.0.1 that signs itself.
class Certificate {
 public:
  Certificate()
      : key_(EVP_PKEY_Q_keygen(nullptr, nullptr, "RSA", std::size_t{2048})),
        certificate_(X509_new()) {
    X509_set_version(certificate_, X509_VERSION_3);
    ASN1_INTEGER_set(X509_get_serialNumber(certificate_), 1);
    X509_gmtime_adj(X509_getm_notBefore(certificate_), -3600);
    X509_gmtime_adj(X509_getm_notAfter(certificate_), 3600);
    X509_set_pubkey(certificate_, key_);
    X509_NAME* name = X509_get_subject_name(certificate_);
    X509_NAME_add_entry_by_txt(name, "CN", MBSTRING_ASC,
                               reinterpret_cast<const unsigned char*>("kifo test"), -1, -1, 0);
    X509_set_issuer_name(certificate_, name);
    add(NID_subject_alt_name, "IP:127.0.0.1");
    add(NID_basic_constraints, "critical,CA:TRUE");
    X509_sign(certificate_, key_, EVP_sha256());
  }
  ~Certificate() {
    X509_free(certificate_);
    EVP_PKEY_free(key_);
  }
  Certificate(const Certificate&) = delete;
  Certificate& operator=(const Certificate&) = delete;

  void write(const std::string& path) const {
    std::FILE* file = std::fopen(path.c_str(), "w");
    PEM_write_X509(file, certificate_);
    std::fclose(file);
  }
  [[nodiscard]] X509* x509() const { return certificate_; }
  [[nodiscard]] EVP_PKEY* key() const { return key_; }

 private:
  void add(int kind, const char* text) {
    X509V3_CTX context{};
    X509V3_set_ctx(&context, certificate_, certificate_, nullptr, nullptr, 0);
    X509_EXTENSION* extension = X509V3_EXT_conf_nid(nullptr, &context, kind, text);
    X509_add_ext(certificate_, extension, -1);
    X509_EXTENSION_free(extension);
  }

  EVP_PKEY* const key_;
  X509* const certificate_;
};

class CurlTlsTest : public ::testing::Test {
 protected:
  CurlTlsTest() {
    certificate_.write(authorities_);
    server_.Get("/good", [](const httplib::Request&, httplib::Response& response) {
      response.set_content("over TLS", "text/plain");
    });
    server_.Get("/down", [this](const httplib::Request&, httplib::Response& response) {
      response.set_redirect("http://127.0.0.1:" + std::to_string(port_) + "/good");
    });
    port_ = server_.bind_to_any_port("127.0.0.1");
    thread_ = std::thread([this] { server_.listen_after_bind(); });
  }
  ~CurlTlsTest() override {
    trusting_.stop();  // its connections keep the server's threads
    server_.stop();
    thread_.join();
  }

  HttpAnswer fetch(CurlTransport& transport, const std::string& path) {
    std::promise<HttpAnswer> answer;
    transport.send(
        [&] { return HttpRequest{.url = "https://127.0.0.1:" + std::to_string(port_) + path}; },
        [&](HttpAnswer given) { answer.set_value(std::move(given)); });
    return answer.get_future().get();
  }

  InstalledFakePlatform fake_;
  const std::string authorities_ = fake_.directory.file("authorities.pem");
  const Certificate certificate_;
  httplib::SSLServer server_{certificate_.x509(), certificate_.key()};
  int port_ = 0;
  std::thread thread_;
  CurlTransport trusting_{CurlTransportOptions{.certificateAuthorities = authorities_}};
};

TEST_F(CurlTlsTest, AServerIsBelievedOnlyIfAnAuthorityVouchesForIt) {
  CurlTransport strict;
  const auto refused = fetch(strict, "/good");
  EXPECT_EQ(refused.error.value().code, CURLE_PEER_FAILED_VERIFICATION);
  EXPECT_EQ(fetch(trusting_, "/good").body, "over TLS");
}

TEST_F(CurlTlsTest, ARedirectDownToHttpIsRefused) {
  EXPECT_EQ(fetch(trusting_, "/down").error.value().code, CURLE_UNSUPPORTED_PROTOCOL);
}

TEST_F(CurlTlsTest, AfterANetworkChangeTheNextRequestStillGetsThrough) {
  fetch(trusting_, "/good");
  trusting_.networkChanged();
  EXPECT_EQ(fetch(trusting_, "/good").body, "over TLS");
}

}  // namespace
}  // namespace kifo::testing
