#pragma once

#include <cstdint>
#include <string>
#include <utility>

namespace kifo {

/// One stored request. A value.
struct KifoLog {
  KifoLog() = default;
  KifoLog(std::int64_t id, std::string paramaters, std::string url, std::string httpMethod,
          std::int64_t date, std::int64_t tryCount, std::int64_t isSync, std::string requestId)
      : _id(id),
        _paramaters(std::move(paramaters)),
        _url(std::move(url)),
        _httpMethod(std::move(httpMethod)),
        _date(date),
        _tryCount(tryCount),
        _isSync(isSync),
        _requestId(std::move(requestId)) {}

  std::int64_t _id = 0;
  /// The body as compact JSON text. The spelling is kept for compatibility.
  std::string _paramaters;
  std::string _url;
  std::string _httpMethod = "POST";
  std::int64_t _date = 0;  ///< Whole seconds since 1970.
  std::int64_t _tryCount = 0;
  std::int64_t _isSync = 0;  ///< 1 when it was stored while the network was not online.
  std::string _requestId;
};

}  // namespace kifo
