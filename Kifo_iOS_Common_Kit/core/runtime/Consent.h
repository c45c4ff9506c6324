#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <optional>

#include "Kifo_iOS_Common_Kit/core/ConsentStatus.h"
#include "Kifo_iOS_Common_Kit/ports/Export.h"
#include "Kifo_iOS_Common_Kit/ports/HttpTransport.h"
#include "Kifo_iOS_Common_Kit/ports/Mutex.h"

namespace kifo {

class Runtime;

/// Whether one runtime may work, and how it begins once it may. A revoking withholds the consent
/// from the runtime in force for ever and puts a fresh one in its place, which waits.
///
/// **Threading:** thread-safe.
class Consent {
 public:
  /// Initialises the runtime that it gets; docs/privacy.md shows when.
  using Start = std::function<void(const std::shared_ptr<Runtime>&)>;

  /// True while nothing may leave or be kept.
  [[nodiscard]] bool isWithheld() const { return isWithheld_; }
  /// Waits for whatever `unlessWithheld` runs.
  void setWithheld(bool isWithheld) KIFO_EXCLUDES(mutex_);

  /// Runs `work`, which keeps something or begins to watch something, unless the consent is
  /// withheld; a revoking waits for it and undoes it. `work` must not call the host.
  template <class Work>
  void unlessWithheld(const Work& work) KIFO_EXCLUDES(mutex_) {
    const ReaderLock lock(mutex_);
    if (!isWithheld_) work();
  }

  /// Whether a call of the host is to be dropped, which the inspector is told.
  [[nodiscard]] bool drops(const char* call) const;

 private:
  friend class ConsentKeeper;

  SharedMutex mutex_;
  std::atomic<bool> isWithheld_ = false;  ///< Written with `mutex_` held.

  // Guarded by ConsentKeeper.
  Start start_;                          ///< What the host initialised with; empty before.
  bool waits_ = false;                   ///< `start_` is still to run.
  bool needsConsent_ = false;            ///< It may run only when the consent is given.
  bool isErasing_ = false;               ///< Something is to be erased before it may run.
  std::optional<ConsentStatus> choice_;  ///< Made in this process; counts for more than the files.
};

/// The request, or an empty one while the consent is withheld. For `HttpTransport::Make`:
/// it runs when nothing but the sending is left to do.
KIFO_SHARED HttpRequest withConsent(HttpRequest request);

/// Runs `start` for the runtime in force: at once, or when the user has agreed, where that is
/// needed and has not been so far. An erasing that was interrupted comes first in any case.
void startWithConsent(bool needsConsent, Consent::Start start);

void giveConsent();
void revokeConsent();
ConsentStatus consentChoice();

}  // namespace kifo
