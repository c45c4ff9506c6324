#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

#include "Kifo_iOS_Common_Kit/core/EventParameters.h"

namespace kifo {

/// A request's dictionary: given, or composed once by whichever thread first needs
/// it; or none.
///
/// **Threading:** a value.
struct RequestParameters {
  using Dictionary = std::shared_ptr<const EventParameters>;

  RequestParameters() = default;
  RequestParameters(Dictionary given) : dictionary(std::move(given)) {}
  RequestParameters(std::function<EventParameters()> composed) : compose(std::move(composed)) {}

  Dictionary dictionary;
  std::function<EventParameters()> compose;
};

/// Where a request goes: an address that gets the parameters as its query, replacing any that it
/// has, or an address that is taken as it stands.
struct ServiceUrl {
  std::string base;
  bool hasQuery = false;
};

/// What a request looks like on the wire: the query and the body. Both are written once, by
/// whichever thread first needs them, which is not the one that sends an event unless the request
/// cannot go out yet.
///
/// Text that is no UTF-8 gets replacement characters rather than being lost.
///
/// **Threading:** thread-safe and, seen from outside, immutable.
class RequestTexts {
 public:
  RequestTexts(ServiceUrl serviceUrl, RequestParameters parameters)
      : serviceUrl_(std::move(serviceUrl)), parameters_(std::move(parameters)) {}

  /// The absolute URL: query items sorted by key, only unreserved characters bare.
  const std::string& url() const;
  /// The parameters as compact JSON; "{}" without parameters.
  const std::string& json() const;
  /// The JSON when there are parameters; none without.
  std::optional<std::string> body() const;

 private:
  const RequestParameters::Dictionary& dictionary() const;

  const ServiceUrl serviceUrl_;
  mutable std::once_flag dictionaryOnce_;
  mutable RequestParameters parameters_;  ///< `compose` is empty once it has run.
  mutable std::once_flag urlOnce_;
  mutable std::once_flag jsonOnce_;
  mutable std::string url_;
  mutable std::string json_;
};

/// The dictionary that a stored body text holds; null when it holds none.
RequestParameters::Dictionary parametersFromText(std::string_view text);

/// Whether `text` is well-formed UTF-8.
bool isUtf8(const std::string& text);

}  // namespace kifo
