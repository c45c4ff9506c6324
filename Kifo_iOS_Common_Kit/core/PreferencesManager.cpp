#include "Kifo_iOS_Common_Kit/core/PreferencesManager.h"

#include "Kifo_iOS_Common_Kit/core/PayloadKeys.h"
#include "Kifo_iOS_Common_Kit/ports/Platform.h"

namespace kifo {
namespace {

/// Seconds. Kept for compatibility.
constexpr double kDefaultRequestTimeout = 5000.0;

std::shared_ptr<UserDefaults> standard() {
  return Platform::current()->userDefaults;
}

}  // namespace

PreferencesManager::PreferencesManager() : store_(standard()) {}

std::shared_ptr<UserDefaults> PreferencesManager::mSharedPreferences() const {
  return store_;
}

void PreferencesManager::setMSharedPreferences(std::shared_ptr<UserDefaults> store) {
  store_ = std::move(store);
}

std::string PreferencesManager::actorId() {
  return standard()->string(TokenConstant::ACTOR_ID).value_or("");
}

void PreferencesManager::setActorId(const std::string& actorId) {
  standard()->setValue(TokenConstant::ACTOR_ID, actorId);
}

double PreferencesManager::requestTimeout() {
  const double stored = standard()->number(TokenConstant::TIMEOUT);
  return stored > 0.0 ? stored : kDefaultRequestTimeout;
}

std::string PreferencesManager::token(PreferencesKey key) {
  return standard()->string(std::string(rawValue(key))).value_or("");
}

void PreferencesManager::setToken(PreferencesKey key, const std::string& token) {
  standard()->setValue(std::string(rawValue(key)), token);
}

}  // namespace kifo
