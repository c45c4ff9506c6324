#pragma once

#include <memory>
#include <string>

#include "Kifo_iOS_Common_Kit/core/Vocabulary.h"
#include "Kifo_iOS_Common_Kit/ports/UserDefaults.h"

namespace kifo {

/// Something that keeps a reference to the store of the values that outlive the process.
class PreferencesManagerProtocol {
 public:
  virtual ~PreferencesManagerProtocol() = default;

  [[nodiscard]] virtual std::shared_ptr<UserDefaults> mSharedPreferences() const = 0;
  virtual void setMSharedPreferences(std::shared_ptr<UserDefaults> store) = 0;
};

/// The SDK's few values that outlive the process, read by the rules that the flows share.
///
/// **Threading:** the static operations are thread-safe; an instance is externally synchronised.
class PreferencesManager : public PreferencesManagerProtocol {
 public:
  PreferencesManager();

  [[nodiscard]] std::shared_ptr<UserDefaults> mSharedPreferences() const override;
  void setMSharedPreferences(std::shared_ptr<UserDefaults> store) override;

  /// "kifo_actorId"; empty when absent.
  static std::string actorId();
  static void setActorId(const std::string& actorId);

  /// "kifo_timeout" when it is above zero, else 5000.0. It is handed to every request unchanged, as
  /// seconds, so the default is a very long time-out; that is meant.
  static double requestTimeout();

  /// The token kept under `key`; empty when absent.
  static std::string token(PreferencesKey key);
  static void setToken(PreferencesKey key, const std::string& token);

 private:
  std::shared_ptr<UserDefaults> store_;
};

}  // namespace kifo
