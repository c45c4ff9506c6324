#pragma once

#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/x509v3.h>

#include <memory>
#include <string>

#include "tests/support/Common.h"

namespace kifo::testing {

/// A certificate with its key, made for one test.
///
///     const Certificate authority({.isAuthority = true});
///     const Certificate server({.names = "IP:127.0.0.1"}, &authority);
class Certificate {
 public:
  struct Contents {
    std::string names = "IP:127.0.0.1";  ///< As OpenSSL writes a subjectAltName.
    long validFrom = -3600;              ///< Seconds from now.
    long validUntil = 3600;
    bool isAuthority = false;
  };

  /// Signed by `issuer`, or by itself.
  explicit Certificate(const Contents& contents, const Certificate* issuer = nullptr)
      : key_(EVP_PKEY_Q_keygen(nullptr, nullptr, "RSA", std::size_t{2048})),
        certificate_(X509_new()) {
    const Certificate& by = issuer ? *issuer : *this;
    X509* made = certificate_.get();
    X509_set_version(made, X509_VERSION_3);
    ASN1_INTEGER_set(X509_get_serialNumber(made), issuer ? 2 : 1);
    X509_gmtime_adj(X509_getm_notBefore(made), contents.validFrom);
    X509_gmtime_adj(X509_getm_notAfter(made), contents.validUntil);
    X509_set_pubkey(made, key_.get());
    const auto* name = reinterpret_cast<const unsigned char*>(
        contents.isAuthority ? "kifo test authority" : "kifo test");
    X509_NAME_add_entry_by_txt(X509_get_subject_name(made), "CN", MBSTRING_ASC, name, -1, -1, 0);
    X509_set_issuer_name(made, X509_get_subject_name(by.certificate_.get()));
    if (contents.isAuthority) add(NID_basic_constraints, "critical,CA:TRUE", by);
    add(NID_subject_alt_name, contents.names.c_str(), by);
    X509_sign(made, by.key_.get(), EVP_sha256());
  }
  [[nodiscard]] std::string pem() const {
    return textOf([this](BIO* bio) { PEM_write_bio_X509(bio, certificate_.get()); });
  }

  [[nodiscard]] std::string keyPem() const {
    return textOf([this](BIO* bio) {
      PEM_write_bio_PrivateKey(bio, key_.get(), nullptr, nullptr, 0, nullptr, nullptr);
    });
  }

 private:
  struct Free {
    void operator()(EVP_PKEY* key) const { EVP_PKEY_free(key); }
    void operator()(X509* certificate) const { X509_free(certificate); }
  };

  template <class Write>
  static std::string textOf(Write write) {
    BIO* bio = BIO_new(BIO_s_mem());
    write(bio);
    char* bytes = nullptr;
    const long size = BIO_get_mem_data(bio, &bytes);
    std::string text(bytes, static_cast<std::size_t>(size));
    BIO_free(bio);
    return text;
  }
  void add(int kind, const char* text, const Certificate& issuer) {
    X509V3_CTX context{};
    X509V3_set_ctx(&context, issuer.certificate_.get(), certificate_.get(), nullptr, nullptr, 0);
    X509_EXTENSION* extension = X509V3_EXT_conf_nid(nullptr, &context, kind, text);
    X509_add_ext(certificate_.get(), extension, -1);
    X509_EXTENSION_free(extension);
  }

  const std::unique_ptr<EVP_PKEY, Free> key_;
  const std::unique_ptr<X509, Free> certificate_;
};

}  // namespace kifo::testing
