#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "Kifo_iOS_Common_Kit/core/Record.h"

namespace kifo {

/// The server's generic answer. A value.
struct BaseResponse {
  std::optional<std::int64_t> code;
  std::optional<std::string> message;
};

template <>
struct RecordFields<BaseResponse> {
  static constexpr auto fields =
      std::tuple(field("code", &BaseResponse::code), field("message", &BaseResponse::message));
};

}  // namespace kifo
