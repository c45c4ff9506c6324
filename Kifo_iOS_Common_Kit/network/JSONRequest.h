#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "Kifo_iOS_Common_Kit/network/HTTPMethod.h"
#include "Kifo_iOS_Common_Kit/network/RequestTexts.h"
#include "Kifo_iOS_Common_Kit/ports/Error.h"

namespace kifo {

/// One request as the service client is given it.
///
/// **Threading:** a value. The completion runs on the answer queue, once for each answer.
template <class Response>
struct JSONRequest {
  /// What the server answered, or null; `flag` is true whenever an answer or an error came.
  using CompletionHandler = std::function<void(
      std::shared_ptr<Response> result, std::optional<Error> error, std::optional<bool> flag)>;
  using Headers = std::map<std::string, std::string>;

  /// The request id is not used: `sendRequest` gets it. Kept for compatibility.
  JSONRequest(HTTPMethod method, ServiceUrl url, std::optional<Headers> headers_,
              RequestParameters parameters_, const std::string& /*requestId*/,
              CompletionHandler completion, std::optional<bool> isCached_)
      : completionHandler(std::move(completion)),
        httpMethod(rawValue(method)),
        serviceUrl(std::move(url)),
        headers(std::move(headers_)),
        parameters(std::move(parameters_)),
        isCached(isCached_) {}

  CompletionHandler completionHandler;
  std::string httpMethod;
  ServiceUrl serviceUrl;
  std::optional<Headers> headers;  ///< Not sent. Kept for compatibility.
  RequestParameters parameters;    ///< The query and the JSON body.
  std::optional<bool> isCached;    ///< False for a fresh request, true for a stored row.
};

}  // namespace kifo
