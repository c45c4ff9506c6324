#pragma once

#include <curl/curl.h>

#include <array>
#include <chrono>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "Kifo_iOS_Common_Kit/ports/HttpTransport.h"

namespace kifo {

/// The answer for a failure: domain "http", libcurl's code, and `detail` or, when that is empty, a
/// message for the code. The only place that translates libcurl's codes.
HttpAnswer failedAnswer(int curlCode, std::string_view detail = {});

/// The answer to requests that were not answered when the transport stopped.
HttpAnswer cancelledAnswer();

class CurlSockets;

/// One request and the answer received so far.
///
/// **Threading:** the transport's thread only.
/// **Ownership:** the handle that `begin` sets up points into this object until `end`.
class CurlTransfer {
 public:
  using Clock = std::chrono::steady_clock;

  /// The request's time-out starts. `maximumBodySize` applies when the request names none.
  CurlTransfer(std::uint64_t id, HttpRequest request, std::size_t maximumBodySize);
  CurlTransfer(const CurlTransfer&) = delete;
  CurlTransfer& operator=(const CurlTransfer&) = delete;

  [[nodiscard]] std::uint64_t id() const { return id_; }
  /// Scheme, host and port of the URL, in lower case.
  [[nodiscard]] const std::string& authority() const { return authority_; }
  [[nodiscard]] Clock::time_point deadline() const { return deadline_; }
  /// CURLE_OK, or why the request cannot be sent at all.
  [[nodiscard]] CURLcode fault() const { return fault_; }

  /// Sets up a fresh handle for the request and registers it with `sockets`.
  void begin(CURL* easy, CurlSockets& sockets);
  [[nodiscard]] CURL* easy() const { return easy_; }
  /// Whether the request is to be begun once more, over a connection of its own: a kept one ended
  /// without a byte, and the request may be repeated. True once at most; the handle is done with.
  bool repeats(CURLcode result);
  /// The answer, once libcurl has finished with the handle.
  HttpAnswer end(CURLcode result);

 private:
  static std::size_t take(char* data, std::size_t, std::size_t size, void* self);
  static int sending(void* self, char* remote, char* local, int remotePort, int localPort);
  [[nodiscard]] bool isFirstSending();
  [[nodiscard]] bool isSecure() const;
  void setMethod();
  void setHeaders();
  void setSafety();
  void addHeader(const std::string& line);

  struct FreeList {
    void operator()(curl_slist* list) const { curl_slist_free_all(list); }
  };

  const std::uint64_t id_;
  const HttpRequest request_;
  const std::size_t maximumBodySize_;
  const std::string authority_;
  const Clock::time_point deadline_;
  const CURLcode fault_;
  CURL* easy_ = nullptr;
  CurlSockets* sockets_ = nullptr;
  long redirects_ = -1;      ///< Followed when a request last went out; each leads to another one.
  bool isRepeated_ = false;  ///< This is the second attempt.
  std::unique_ptr<curl_slist, FreeList> headers_;
  std::array<char, CURL_ERROR_SIZE> detail_{};
  std::string body_;
  bool tooLarge_ = false;
};

}  // namespace kifo
