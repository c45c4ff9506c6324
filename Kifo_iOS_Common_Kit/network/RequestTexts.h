#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "Kifo_iOS_Common_Kit/core/EventParameters.h"
#include "Kifo_iOS_Common_Kit/ports/Mutex.h"

namespace kifo {

/// A request's dictionary: given, or composed once by the thread that first needs it, or none.
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

/// What a request looks like on the wire: the query and the body, which hold the same parameters.
/// Kept for compatibility. Both are written once, by the thread that first needs them: not by the
/// one that sends an event, unless the request cannot go out yet.
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
  const RequestParameters::Dictionary& dictionary() const KIFO_REQUIRES(mutex_);
  const std::string& jsonText() const KIFO_REQUIRES(mutex_);

  const ServiceUrl serviceUrl_;
  mutable Mutex mutex_;
  /// `compose` is empty once it has run.
  mutable RequestParameters parameters_ KIFO_GUARDED_BY(mutex_);
  // Never changed again once written: they are handed out by reference.
  mutable std::optional<std::string> url_ KIFO_GUARDED_BY(mutex_);
  mutable std::optional<std::string> json_ KIFO_GUARDED_BY(mutex_);
};

/// The dictionary that a stored body text holds; null when it holds none.
RequestParameters::Dictionary parametersFromText(std::string_view text);

/// Whether `text` is well-formed UTF-8.
bool isUtf8(const std::string& text);

}  // namespace kifo
