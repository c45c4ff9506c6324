#include "Kifo_iOS_Common_Kit/core/runtime/Consent.h"

#include <utility>

#include "Kifo_iOS_Common_Kit/core/Console.h"
#include "Kifo_iOS_Common_Kit/core/runtime/Inspect.h"
#include "Kifo_iOS_Common_Kit/core/runtime/Runtime.h"
#include "Kifo_iOS_Common_Kit/events/InAppTrigger.h"
#include "Kifo_iOS_Common_Kit/inapp/PopupGate.h"
#include "Kifo_iOS_Common_Kit/network/NetworkManager.h"
#include "Kifo_iOS_Common_Kit/notifications/AttachmentFile.h"
#include "Kifo_iOS_Common_Kit/storage/ConsentFiles.h"
#include "Kifo_iOS_Common_Kit/storage/DiskStoreFiles.h"
#include "Kifo_iOS_Common_Kit/storage/KifoSqliteManager.h"

namespace kifo {
namespace {

constexpr std::string_view LOG_TAG = "Kifo Consent:";

void print(std::string_view message) {
  Console::print(LOG_TAG, message);
}

ConsentFiles filesOf(const Platform& platform) {
  return {DiskStoreFiles::unlessGiven(platform.storeFiles), platform.documentsDirectory};
}

/// Ends what the runtime does, without waiting for any of it.
void end(Runtime& runtime) {
  runtime.consent.setWithheld(true);
  runtime.isStopping = true;
  runtime.tokenFetch.end();
  runtime.network->stopMonitoring();
  runtime.store()->abandon();
  runtime.inAppTrigger->clear();
  runtime.popupGate->close();
  // After the flag is set: a request made later is empty, one made earlier is cancelled.
  Platform::current()->http->cancelOpen();
}

/// Main queue only.
bool eraseAll(const Platform& platform) {
  const bool isStoreGone = Runtime::current()->store()->eraseFiles();
  const bool areDefaultsGone = platform.userDefaults->removeAll();
  const bool arePicturesGone = AttachmentFile::removeAll();
  return isStoreGone && areDefaultsGone && arePicturesGone;
}

}  // namespace

/// The choice and what follows from it, one step at a time: the lock is held while the files, the
/// choice and the runtime in force change, and not while something is erased or begun.
class ConsentKeeper {
 public:
  static ConsentKeeper& only() {
    static ConsentKeeper& keeper = *new ConsentKeeper;
    return keeper;
  }

  void start(bool needsConsent, Consent::Start start) KIFO_EXCLUDES(mutex_);
  void give() KIFO_EXCLUDES(mutex_);
  void revoke() KIFO_EXCLUDES(mutex_);
  ConsentStatus choice() KIFO_EXCLUDES(mutex_);

 private:
  static ConsentStatus choiceOf(const Consent& consent, const ConsentFiles& files);
  static bool isErasing(const Consent& consent, const ConsentFiles& files);
  /// The start that is due, if any: the consent is no longer withheld then.
  static Consent::Start takeDue(Runtime& runtime, const ConsentFiles& files);
  void postErasing();
  void erase() KIFO_EXCLUDES(mutex_);

  Mutex mutex_;
};

ConsentStatus ConsentKeeper::choiceOf(const Consent& consent, const ConsentFiles& files) {
  return consent.choice_ ? *consent.choice_ : files.choice();
}

bool ConsentKeeper::isErasing(const Consent& consent, const ConsentFiles& files) {
  return consent.isErasing_ || files.isErasing();
}

Consent::Start ConsentKeeper::takeDue(Runtime& runtime, const ConsentFiles& files) {
  Consent& consent = runtime.consent;
  if (!consent.waits_ || runtime.isStopping || isErasing(consent, files)) return {};
  if (consent.needsConsent_ && choiceOf(consent, files) != ConsentStatus::GIVEN) return {};
  consent.waits_ = false;
  consent.setWithheld(false);
  return consent.start_;
}

void ConsentKeeper::start(bool needsConsent, Consent::Start start) {
  const auto files = filesOf(*Platform::current());
  MutexLock lock(mutex_);
  const auto runtime = Runtime::current();
  Consent& consent = runtime->consent;
  consent.start_ = std::move(start);
  consent.needsConsent_ = needsConsent;
  consent.waits_ = true;
  const auto due = takeDue(*runtime, files);
  if (!due) consent.setWithheld(true);
  const bool erasesFirst = isErasing(consent, files);
  lock.unlock();
  if (due) return due(runtime);
  print(erasesFirst ? "what was kept is erased first" : "the user has not agreed yet");
  if (erasesFirst) postErasing();
}

void ConsentKeeper::give() {
  auto files = filesOf(*Platform::current());
  MutexLock lock(mutex_);
  const auto runtime = Runtime::current();
  runtime->consent.choice_ = ConsentStatus::GIVEN;
  const bool isKept = files.give();
  const auto due = takeDue(*runtime, files);
  const bool erasesFirst = isErasing(runtime->consent, files);
  lock.unlock();
  print(isKept ? "given" : "given, but for this process only: it could not be written down");
  if (due) return due(runtime);
  if (erasesFirst) postErasing();
}

void ConsentKeeper::revoke() {
  auto files = filesOf(*Platform::current());
  const auto fresh = std::make_shared<Runtime>();
  MutexLock lock(mutex_);
  // Before anything else: a process that is killed from here on has refused.
  const bool isKept = files.refuse();
  const auto old = Runtime::existing();
  Consent& next = fresh->consent;
  next.choice_ = ConsentStatus::REFUSED;
  next.isErasing_ = true;
  next.needsConsent_ = true;
  next.setWithheld(true);
  if (old) {
    next.start_ = old->consent.start_;
    next.waits_ = static_cast<bool>(next.start_);
    fresh->session.setTokenService(old->session.tokenService());
    fresh->popupGate->takeSettings(*old->popupGate);
  }
  Runtime::exchange(fresh);
  lock.unlock();
  print(isKept ? "revoked: what was kept is erased"
               : "revoked: what was kept is erased, but the choice could not be written down");
  if (old) end(*old);
  postErasing();
}

ConsentStatus ConsentKeeper::choice() {
  const auto files = filesOf(*Platform::current());
  const MutexLock lock(mutex_);
  const auto runtime = Runtime::existing();
  return runtime ? choiceOf(runtime->consent, files) : files.choice();
}

void ConsentKeeper::postErasing() {
  Platform::current()->mainQueue->post([this] { erase(); });
}

/// On the main queue, behind whatever was written before the consent was revoked.
void ConsentKeeper::erase() {
  const auto platform = Platform::current();
  auto files = filesOf(*platform);
  MutexLock lock(mutex_);
  // An erasing before this one may have done it.
  if (!isErasing(Runtime::current()->consent, files)) return;
  lock.unlock();
  const bool isErased = eraseAll(*platform);
  lock.lock();
  const auto runtime = Runtime::current();
  const bool isDone = isErased && files.endErasing();
  if (isDone) runtime->consent.isErasing_ = false;
  const auto due = takeDue(*runtime, files);
  lock.unlock();
  print(isDone ? "what was kept is erased"
               : "not all could be erased: it is tried again next time");
  // Where a token may be waited for.
  if (due) platform->answerQueue->post([runtime, due] { due(runtime); });
}

// Consent ----------------------------------------------------------------------------------------

void Consent::setWithheld(bool isWithheld) {
  const WriterLock lock(mutex_);
  isWithheld_ = isWithheld;
}

bool Consent::drops(const char* call) const {
  if (!isWithheld_) return false;
  KIFO_INSPECT("dropped", {{"call", call}, {"reason", "no consent"}});
  return true;
}

HttpRequest withConsent(HttpRequest request) {
  const auto runtime = Runtime::existing();
  return runtime && runtime->consent.isWithheld() ? HttpRequest() : std::move(request);
}

void startWithConsent(bool needsConsent, Consent::Start start) {
  ConsentKeeper::only().start(needsConsent, std::move(start));
}

void giveConsent() {
  ConsentKeeper::only().give();
}

void revokeConsent() {
  ConsentKeeper::only().revoke();
}

ConsentStatus consentChoice() {
  return ConsentKeeper::only().choice();
}

}  // namespace kifo
