#include "platform/linux/http/CurlTransfer.h"

#include <curl/curl.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <string_view>
#include <utility>

#include "platform/linux/http/CurlSockets.h"

namespace kifo {
namespace {

/// libcurl's messages address a program that calls libcurl; these address a host of the SDK.
std::string_view wordsFor(int code) {
  switch (code) {
    case CURLE_UNSUPPORTED_PROTOCOL:
      return "only http and https are served";
    case CURLE_URL_MALFORMAT:
      return "the address is no URL";
    case CURLE_OPERATION_TIMEDOUT:
      return "no whole answer came in time";
    case CURLE_FILESIZE_EXCEEDED:
      return "the answer is larger than what is taken";
    case CURLE_BAD_CONTENT_ENCODING:
      return "the answer's compression is broken";
    case CURLE_TOO_MANY_REDIRECTS:
      return "the server redirects without end";
    default:
      return curl_easy_strerror(static_cast<CURLcode>(code));
  }
}

using Clock = CurlTransfer::Clock;

constexpr double kLongestTimeout = INT_MAX / 1000.0;  // seconds; what libcurl counts with, 24 days
constexpr long kMaximumRedirects = 10;
constexpr std::string_view kSecure = "https://";

std::string lowerCase(std::string_view text) {
  std::string lower(text);
  std::ranges::transform(lower, lower.begin(), [](char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  });
  return lower;
}

std::string authorityOf(const std::string& url) {
  const auto scheme = url.find("://");
  if (scheme == std::string::npos) return {};
  return lowerCase(std::string_view(url).substr(0, url.find_first_of("/?#", scheme + 3)));
}

Clock::time_point deadlineAfter(double seconds) {
  seconds = std::isnan(seconds) ? 0.0 : std::clamp(seconds, 0.0, kLongestTimeout);
  return Clock::now() +
         std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(seconds));
}

bool isTokenCharacter(char c) {
  const bool alphanumeric =
      (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
  return alphanumeric || std::string_view("!#$%&'*+-.^_`|~").find(c) != std::string_view::npos;
}

bool isToken(const std::string& text) {
  return !text.empty() && std::ranges::all_of(text, isTokenCharacter);
}

/// A line break in a value would start another header, or the body.
bool isHeader(const std::pair<std::string, std::string>& header) {
  constexpr std::string_view kForbidden("\r\n\0", 3);
  return isToken(header.first) && header.second.find_first_of(kForbidden) == std::string::npos;
}

CURLcode faultOf(const HttpRequest& request, const std::string& authority) {
  if (authority.empty()) return CURLE_URL_MALFORMAT;
  if (!authority.starts_with("http://") && !authority.starts_with(kSecure)) {
    return CURLE_UNSUPPORTED_PROTOCOL;
  }
  const bool sound = isToken(request.method) && std::ranges::all_of(request.headers, isHeader);
  return sound ? CURLE_OK : CURLE_BAD_FUNCTION_ARGUMENT;
}

bool names(const HttpRequest& request, std::string_view header) {
  return std::ranges::any_of(request.headers,
                             [&](const auto& each) { return lowerCase(each.first) == header; });
}

void allowProtocols(CURL* easy, bool onlySecureRedirects) {
#if LIBCURL_VERSION_NUM >= 0x075500
  curl_easy_setopt(easy, CURLOPT_PROTOCOLS_STR, "http,https");
  curl_easy_setopt(easy, CURLOPT_REDIR_PROTOCOLS_STR, onlySecureRedirects ? "https" : "http,https");
#else
  constexpr long kBoth = CURLPROTO_HTTP | CURLPROTO_HTTPS;
  curl_easy_setopt(easy, CURLOPT_PROTOCOLS, kBoth);
  curl_easy_setopt(easy, CURLOPT_REDIR_PROTOCOLS, onlySecureRedirects ? CURLPROTO_HTTPS : kBoth);
#endif
}

}  // namespace

HttpAnswer failedAnswer(int curlCode, std::string_view detail) {
  return {
      Error{"http", curlCode, std::string(detail.empty() ? wordsFor(curlCode) : detail)}, 0, {}};
}

HttpAnswer cancelledAnswer() {
  return {Error{"http", 0, "cancelled"}, 0, {}};
}

CurlTransfer::CurlTransfer(std::uint64_t id, HttpRequest request, std::size_t maximumBodySize)
    : id_(id),
      request_(std::move(request)),
      maximumBodySize_(request_.maximumBodySize > 0 ? request_.maximumBodySize : maximumBodySize),
      authority_(authorityOf(request_.url)),
      deadline_(deadlineAfter(request_.timeout)),
      fault_(faultOf(request_, authority_)) {}

void CurlTransfer::begin(CURL* easy, CurlSockets& sockets) {
  easy_ = easy;
  sockets_ = &sockets;
  const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline_ - Clock::now()).count();
  curl_easy_setopt(easy_, CURLOPT_URL, request_.url.c_str());
  curl_easy_setopt(easy_, CURLOPT_TIMEOUT_MS,
                   static_cast<long>(std::clamp<long long>(left, 1, INT_MAX)));
  curl_easy_setopt(easy_, CURLOPT_PRIVATE, this);
  curl_easy_setopt(easy_, CURLOPT_ERRORBUFFER, detail_.data());
  curl_easy_setopt(easy_, CURLOPT_WRITEFUNCTION, &CurlTransfer::take);
  curl_easy_setopt(easy_, CURLOPT_WRITEDATA, this);
  curl_easy_setopt(easy_, CURLOPT_PREREQFUNCTION, &CurlTransfer::sending);
  curl_easy_setopt(easy_, CURLOPT_PREREQDATA, this);
  curl_easy_setopt(easy_, CURLOPT_ACCEPT_ENCODING, "gzip");
  curl_easy_setopt(easy_, CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_2TLS));
  curl_easy_setopt(easy_, CURLOPT_TCP_KEEPALIVE, 1L);
  curl_easy_setopt(easy_, CURLOPT_DNS_CACHE_TIMEOUT, sockets.nameLifetime());
  // HTTP/2 would put the request on an old connection while others still use it. A second attempt
  // must not get another kept connection that has ended.
  const bool isFresh = isRepeated_ || (sockets.hasStale() && isSecure());
  curl_easy_setopt(easy_, CURLOPT_FRESH_CONNECT, isFresh ? 1L : 0L);
  setMethod();
  setHeaders();
  setSafety();
  sockets.observe(easy_, id_);
}

bool CurlTransfer::isSecure() const {
  return authority_.starts_with(kSecure);
}

void CurlTransfer::setMethod() {
  const std::string& method = request_.method;
  const bool sendsBody = request_.body || method == "POST" || method == "PUT" || method == "PATCH";
  if (method == "HEAD") {
    curl_easy_setopt(easy_, CURLOPT_NOBODY, 1L);
    return;
  }
  if (!sendsBody) {
    curl_easy_setopt(easy_, CURLOPT_HTTPGET, 1L);
  } else {
    curl_easy_setopt(easy_, CURLOPT_POST, 1L);
    curl_easy_setopt(easy_, CURLOPT_POSTFIELDSIZE_LARGE,
                     static_cast<curl_off_t>(request_.body ? request_.body->size() : 0));
    curl_easy_setopt(easy_, CURLOPT_POSTFIELDS, request_.body ? request_.body->data() : "");
  }
  // A method that is set by name would also be kept by redirects that turn a POST into a GET.
  if (method != (sendsBody ? "POST" : "GET")) {
    curl_easy_setopt(easy_, CURLOPT_CUSTOMREQUEST, method.c_str());
  }
}

void CurlTransfer::setHeaders() {
  for (const auto& [name, value] : request_.headers) {
    // libcurl omits a header without a value; the form with a semicolon sends it.
    const bool blank = value.find_first_not_of(" \t") == std::string::npos;
    addHeader(blank ? name + ";" : name + ": " + value);
  }
  // Headers that libcurl would add by itself for a body.
  addHeader("Expect:");
  if (!names(request_, "content-type")) addHeader("Content-Type:");
  curl_easy_setopt(easy_, CURLOPT_HTTPHEADER, headers_.get());
}

void CurlTransfer::addHeader(const std::string& line) {
  curl_slist* list = headers_.release();
  curl_slist* longer = curl_slist_append(list, line.c_str());
  headers_.reset(longer ? longer : list);
}

void CurlTransfer::setSafety() {
  const bool secure = isSecure();
  allowProtocols(easy_, secure);
  curl_easy_setopt(easy_, CURLOPT_NOSIGNAL, 1L);
  // libcurl itself drops the Authorization header once a redirect leaves scheme, host or port.
  curl_easy_setopt(easy_, CURLOPT_FOLLOWLOCATION, 1L);
  curl_easy_setopt(easy_, CURLOPT_MAXREDIRS, kMaximumRedirects);
  curl_easy_setopt(easy_, CURLOPT_SSL_VERIFYPEER, 1L);
  curl_easy_setopt(easy_, CURLOPT_SSL_VERIFYHOST, 2L);
#if LIBCURL_VERSION_NUM >= 0x075700
  // A name server that does not answer must not delay the end.
  curl_easy_setopt(easy_, CURLOPT_QUICK_EXIT, 1L);
#endif
}

std::size_t CurlTransfer::take(char* data, std::size_t, std::size_t size, void* self) {
  auto& transfer = *static_cast<CurlTransfer*>(self);
  transfer.tooLarge_ = size > transfer.maximumBodySize_ - transfer.body_.size();
  if (transfer.tooLarge_) return 0;
  try {
    transfer.body_.append(data, size);
  } catch (const std::bad_alloc&) {
    return 0;
  }
  return size;
}

/// Before each request on a connection. When a kept connection ends without a byte, libcurl sends
/// the request again by itself, up to five times, on whatever connection it has kept, and has no
/// option against it.
int CurlTransfer::sending(void* self, char*, char* local, int, int localPort) {
  auto& transfer = *static_cast<CurlTransfer*>(self);
  if (!transfer.isFirstSending()) return CURL_PREREQFUNC_ABORT;
  transfer.sockets_->connected(transfer.id_, local, localPort);
  return CURL_PREREQFUNC_OK;
}

bool CurlTransfer::isFirstSending() {
  long redirects = 0;
  curl_easy_getinfo(easy_, CURLINFO_REDIRECT_COUNT, &redirects);
  return std::exchange(redirects_, redirects) != redirects;
}

bool CurlTransfer::repeats(CURLcode result) {
  const bool isRead = request_.method == "GET" || request_.method == "HEAD";
  // Nothing else aborts a transfer than its second sending.
  if (result != CURLE_ABORTED_BY_CALLBACK || !(request_.mayRepeat || isRead)) return false;
  if (deadline_ <= Clock::now() || std::exchange(isRepeated_, true)) return false;
  easy_ = nullptr;
  headers_.reset();
  redirects_ = -1;
  return true;
}

HttpAnswer CurlTransfer::end(CURLcode result) {
  long status = 0;
  curl_easy_getinfo(easy_, CURLINFO_RESPONSE_CODE, &status);
  easy_ = nullptr;
  if (tooLarge_) return failedAnswer(CURLE_FILESIZE_EXCEEDED);
  if (result == CURLE_OPERATION_TIMEDOUT) return failedAnswer(result);
  if (result == CURLE_ABORTED_BY_CALLBACK) return failedAnswer(CURLE_GOT_NOTHING);
  if (result != CURLE_OK) return failedAnswer(result, detail_.data());
  return {std::nullopt, static_cast<int>(status), std::move(body_)};
}

}  // namespace kifo
