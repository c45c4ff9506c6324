#include "apps/kifo/host/ScriptedTokenService.h"

#include <utility>

namespace kifo::tool {

ScriptedTokenService::ScriptedTokenService(Answer answer, std::shared_ptr<SerialQueue> queue,
                                           std::shared_ptr<Output> output)
    : answer_(std::move(answer)), queue_(std::move(queue)), output_(std::move(output)) {}

void ScriptedTokenService::getToken(Completion completion) {
  output_->line({{"callback", "getToken"}});
  if (answer_.delay <= 0.0) {
    completion(answer_.token);
    return;
  }
  queue_->schedule(
      SerialQueue::Duration(answer_.delay),
      [completion = std::move(completion), token = answer_.token] { completion(token); });
}

}  // namespace kifo::tool
