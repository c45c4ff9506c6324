// The transport over TLS: whom it trusts and where it lets itself be led.
#include <curl/curl.h>
#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/x509v3.h>

#include <fstream>
#include <future>
#include <memory>
#include <string>

#include "platform/linux/CurlTransport.h"
#include "testing/FakePlatform.h"
#include "testing/server/LocalServer.h"

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

  [[nodiscard]] std::string pem() const {
    return text([this](BIO* bio) { PEM_write_bio_X509(bio, certificate_); });
  }
  [[nodiscard]] std::string keyPem() const {
    return text([this](BIO* bio) {
      PEM_write_bio_PrivateKey(bio, key_, nullptr, nullptr, 0, nullptr, nullptr);
    });
  }

 private:
  void add(int kind, const char* text) {
    X509V3_CTX context{};
    X509V3_set_ctx(&context, certificate_, certificate_, nullptr, nullptr, 0);
    X509_EXTENSION* extension = X509V3_EXT_conf_nid(nullptr, &context, kind, text);
    X509_add_ext(certificate_, extension, -1);
    X509_EXTENSION_free(extension);
  }

  template <class Write>
  static std::string text(Write write) {
    BIO* bio = BIO_new(BIO_s_mem());
    write(bio);
    char* bytes = nullptr;
    const long size = BIO_get_mem_data(bio, &bytes);
    std::string made(bytes, static_cast<std::size_t>(size));
    BIO_free(bio);
    return made;
  }

  EVP_PKEY* const key_;
  X509* const certificate_;
};

class CurlTlsTest : public ::testing::Test {
 protected:
  CurlTlsTest() {
    std::ofstream(authorities_) << certificate_.pem();
    server_.respond("/good", [](const ReceivedRequest&) {
      return LocalServer::Answer{.body = "over TLS", .contentType = "text/plain"};
    });
    server_.respond("/down", [this](const ReceivedRequest&) {
      const std::string plain = "http" + server_.uri().substr(std::string("https").size());
      return LocalServer::Answer{.status = 302, .headers = {{"Location", plain + "/good"}}};
    });
    server_.start();
  }

  HttpAnswer fetch(CurlTransport& transport, const std::string& path) {
    std::promise<HttpAnswer> answer;
    transport.send([&] { return HttpRequest{.url = server_.uri() + path}; },
                   [&](HttpAnswer given) { answer.set_value(std::move(given)); });
    return answer.get_future().get();
  }

  InstalledFakePlatform fake_;
  const std::string authorities_ = fake_.directory.file("authorities.pem");
  const Certificate certificate_;
  LocalServer server_{{.certificate = certificate_.pem(), .privateKey = certificate_.keyPem()}};
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
