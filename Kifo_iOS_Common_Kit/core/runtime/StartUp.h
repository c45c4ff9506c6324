#pragma once

#include <functional>
#include <memory>
#include <string>

#include "Kifo_iOS_Common_Kit/core/KifoInitConfig.h"
#include "Kifo_iOS_Common_Kit/core/runtime/Session.h"

/// How a session starts: tokens, user, store, the first query, the network.
///
/// **Threading:** any thread. **Errors:** the session's status and console lines.
namespace kifo {

class Runtime;

/// What `Kifo::initialize` does once it may: docs/privacy.md says when. `onSuccess` runs on the
/// answer queue, after the first in-app answer; it may be empty.
void startUp(const std::shared_ptr<Runtime>& runtime, const KifoInitConfig& configuration,
             const std::function<void()>& onSuccess);

/// The same for the short form, which takes what `given` names.
void startUpShortForm(const std::shared_ptr<Runtime>& runtime, const Session::Identity& given,
                      bool offlineCachingDisabled);

/// Makes `newActorId` the user and keeps it. A change is reported as an event.
void setActor(Runtime& runtime, const std::string& newActorId);

/// Reports the push tokens that differ from those last reported, once the session has started and
/// has both.
void checkTokens(Runtime& runtime);

}  // namespace kifo
