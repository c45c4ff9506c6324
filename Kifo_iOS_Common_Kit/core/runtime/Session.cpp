#include "Kifo_iOS_Common_Kit/core/runtime/Session.h"

#include <utility>

namespace kifo {

Session::Session() : identity_(std::make_shared<const Identity>()) {}

std::shared_ptr<const Session::Identity> Session::identity() const {
  const ReaderLock lock(mutex_);
  return identity_;
}

void Session::updateIdentity(const std::function<void(Identity&)>& change) {
  std::shared_ptr<const Identity> previous;  // destroyed after the lock is released
  const WriterLock lock(mutex_);
  auto next = std::make_shared<Identity>(*identity_);
  change(*next);
  previous = std::exchange(identity_, std::move(next));
}

std::shared_ptr<const AppCommunication> Session::appCommunication() const {
  const ReaderLock lock(mutex_);
  return appCommunication_;
}

void Session::setAppCommunication(std::shared_ptr<const AppCommunication> answer) {
  // The old answer may be the last holder of a large tree: it goes after the lock.
  const WriterLock lock(mutex_);
  appCommunication_.swap(answer);
}

std::shared_ptr<TokenServiceProtocol> Session::tokenService() const {
  const ReaderLock lock(mutex_);
  return tokenService_;
}

void Session::setTokenService(std::shared_ptr<TokenServiceProtocol> service) {
  const WriterLock lock(mutex_);
  tokenService_.swap(service);
}

std::string Session::withoutCommas(std::string text) {
  std::erase(text, ',');  // kept for compatibility
  return text;
}

}  // namespace kifo
