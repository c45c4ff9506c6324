#pragma once

#include <openssl/evp.h>
#include <openssl/x509.h>

#include <memory>
#include <string>

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
  explicit Certificate(const Contents& contents, const Certificate* issuer = nullptr);

  [[nodiscard]] std::string pem() const;
  [[nodiscard]] std::string keyPem() const;

 private:
  struct Free {
    void operator()(EVP_PKEY* key) const { EVP_PKEY_free(key); }
    void operator()(X509* certificate) const { X509_free(certificate); }
  };

  void add(int kind, const char* text, const Certificate& issuer);

  const std::unique_ptr<EVP_PKEY, Free> key_;
  const std::unique_ptr<X509, Free> certificate_;
};

}  // namespace kifo::testing
