#include "platform/linux/CurlErrors.h"

#include <curl/curl.h>

namespace kifo {
namespace {

/// What libcurl says is meant for those who call libcurl; these are met by those who call us.
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

}  // namespace

HttpAnswer failedAnswer(int curlCode, std::string_view detail) {
  return {
      Error{"http", curlCode, std::string(detail.empty() ? wordsFor(curlCode) : detail)}, 0, {}};
}

HttpAnswer cancelledAnswer() {
  return {Error{"http", 0, "cancelled"}, 0, {}};
}

}  // namespace kifo
