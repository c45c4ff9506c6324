#pragma once

#include <functional>
#include <memory>

namespace kifo {

class Runtime;

/// Asks the server for the current user's campaigns. An answer becomes the session's
/// `appCommunication` and makes it `INITIALIZED`; an answer without one makes it
/// `INITIALIZE_FAILED`. `completion` then learns whether there was one; it runs exactly once, also
/// when the query could not go out at all (which leaves the status as it was).
///
/// **Threading:** may be called from any thread; the completion runs on the answer queue, or at
/// once when the query cannot go out.
void fetchInAppCommunication(const std::shared_ptr<Runtime>& runtime,
                             std::function<void(bool success)> completion);

}  // namespace kifo
