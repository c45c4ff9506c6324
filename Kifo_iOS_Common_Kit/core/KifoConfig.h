#pragma once

namespace kifo {

/// Labels of the server's environments, for the host's own use. The SDK reads neither. Kept for
/// compatibility.
class KifoConfig {
 public:
  static constexpr auto ENVIRONMENT_SANDBOX = "SANDBOX";
  static constexpr auto ENVIRONMENT_PRODUCTION = "PRODUCTION";
};

/// Carries no state. Kept for compatibility.
class KifoSession {};

}  // namespace kifo
