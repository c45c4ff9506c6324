#pragma once

#include <string_view>

namespace kifo {

enum class HTTPMethod { post, get };

/// "POST" or "GET".
constexpr std::string_view rawValue(HTTPMethod method) {
  return method == HTTPMethod::post ? "POST" : "GET";
}

}  // namespace kifo
