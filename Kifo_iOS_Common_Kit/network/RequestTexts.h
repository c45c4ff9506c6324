#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

#include "Kifo_iOS_Common_Kit/core/EventParameters.h"
#include "Kifo_iOS_Common_Kit/ports/Export.h"

namespace kifo {

/// A request's parameters; null for a request without any.
using RequestParameters = std::shared_ptr<const EventParameters>;

/// What a request's parameters look like on the wire: the query and the body. They are put together
/// and written once, by whichever thread first needs them, which is not the one that sends an event
/// unless the request cannot go out yet.
///
/// Text that is no UTF-8 is mended with replacement characters rather than lost.
///
/// **Threading:** thread-safe and, seen from outside, immutable.
class KIFO_EXPORT RequestTexts {
 public:
  using Composition = std::function<RequestParameters()>;  ///< Runs once at most.

  /// `base` gets the parameters as its query, replacing any that it has; without `hasQuery` it is
  /// taken as it stands.
  RequestTexts(std::string base, bool hasQuery, Composition composition);
  RequestTexts(std::string base, bool hasQuery, RequestParameters parameters);

  /// The absolute URL: query items sorted by key, only unreserved characters bare.
  const std::string& url() const;
  /// The parameters as compact JSON; "{}" without parameters.
  const std::string& json() const;
  /// The JSON when there are parameters; none without.
  std::optional<std::string> body() const;

 private:
  const RequestParameters& parameters() const;

  const std::string base_;
  const bool hasQuery_;
  mutable std::once_flag parametersOnce_;
  mutable Composition composition_;  ///< None once it has run.
  mutable RequestParameters parameters_;
  mutable std::once_flag urlOnce_;
  mutable std::once_flag jsonOnce_;
  mutable std::string url_;
  mutable std::string json_;
};

/// The dictionary that a stored body text holds; null when it holds none.
KIFO_EXPORT RequestParameters parametersFromText(std::string_view text);

/// Whether `text` is well-formed UTF-8.
KIFO_EXPORT bool isUtf8(const std::string& text);

}  // namespace kifo
