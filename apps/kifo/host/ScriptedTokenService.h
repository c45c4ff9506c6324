#pragma once

#include <memory>
#include <optional>
#include <string>

#include "Kifo_iOS_Common_Kit/core/TokenServiceProtocol.h"
#include "Kifo_iOS_Common_Kit/ports/SerialQueue.h"
#include "apps/kifo/host/Output.h"

namespace kifo::tool {

/// A host's token service that gives what a script says, at once or later. Each request is written
/// as the callback "getToken".
///
/// **Threading:** thread-safe.
class ScriptedTokenService final : public TokenServiceProtocol {
 public:
  struct Answer {
    std::optional<std::string> token;
    double delay = 0.0;  ///< Seconds; 0 answers before `getToken` returns.
  };

  /// Late answers come on `queue`.
  ScriptedTokenService(Answer answer, std::shared_ptr<SerialQueue> queue,
                       std::shared_ptr<Output> output);

  void getToken(Completion completion) override;

 private:
  const Answer answer_;
  const std::shared_ptr<SerialQueue> queue_;
  const std::shared_ptr<Output> output_;
};

}  // namespace kifo::tool
