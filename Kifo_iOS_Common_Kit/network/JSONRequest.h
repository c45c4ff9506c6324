#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "Kifo_iOS_Common_Kit/network/RequestTexts.h"
#include "Kifo_iOS_Common_Kit/ports/Error.h"

namespace kifo {

/// One request on its way through the service client, and what becomes of its answer.
///
/// **Threading:** a value. The completion runs on the answer queue, once for each answer.
template <class Response>
struct JSONRequest {
  /// What the server answered, or null; `flag` is true whenever an answer or an error came.
  using CompletionHandler = std::function<void(
      std::shared_ptr<Response> result, std::optional<Error> error, std::optional<bool> flag)>;

  CompletionHandler completionHandler;
  std::string httpMethod;
  std::shared_ptr<const RequestTexts>
      serviceUrl;  ///< The whole URL, and the body that goes with it.
  std::map<std::string, std::string>
      headers;  ///< Carried along; the fixed headers are what is sent.
  std::optional<bool>
      isCached;  ///< False for a fresh request, true for one rebuilt from the store.
  std::function<void()>
      whenUnanswered;  ///< Runs when the completion never will: gated, or no data.
};

}  // namespace kifo
