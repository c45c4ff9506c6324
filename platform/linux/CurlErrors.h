#pragma once

#include <string_view>

#include "Kifo_iOS_Common_Kit/ports/HttpTransport.h"

namespace kifo {

/// The answer for a failure: domain "http", libcurl's code, and `detail` or, when that is empty,
/// libcurl's own words for the code. Every code of libcurl becomes ours here.
HttpAnswer failedAnswer(int curlCode, std::string_view detail = {});

/// The answer for what was under way when the transport stopped.
HttpAnswer cancelledAnswer();

}  // namespace kifo
