#pragma once

#include <atomic>
#include <functional>
#include <optional>
#include <string>

#include "Kifo_iOS_Common_Kit/ports/Export.h"

namespace kifo {

/// Supplies authorization tokens; implemented by the host.
///
/// **Threading:** `getToken` is called on the thread that initialises and on the SDK's answer
/// queue. It may complete at once, later, on any thread, more than once, or never.
class KIFO_EXPORT TokenServiceProtocol {
 public:
  using Completion = std::function<void(std::optional<std::string> token)>;

  virtual ~TokenServiceProtocol() = default;

  virtual void getToken(Completion completion) = 0;

  /// Seconds for which the SDK waits for a token. Readable and writable at any time.
  std::atomic<double> kifoTimeout = 3.0;
};

}  // namespace kifo
