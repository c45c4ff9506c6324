#pragma once

#include <map>
#include <optional>
#include <string>
#include <utility>

#include "Kifo_iOS_Common_Kit/ports/UserDefaults.h"
#include "testing/Scripted.h"

namespace kifo::testing {

/// User defaults that live in memory only.
class FakeUserDefaults final : public UserDefaults {
 public:
  using Values = std::map<std::string, DefaultsValue>;

  [[nodiscard]] std::optional<DefaultsValue> value(const std::string& key) const override {
    const Values values = values_.get();
    const auto found = values.find(key);
    return found == values.end() ? std::nullopt : std::optional(found->second);
  }
  void setValue(const std::string& key, DefaultsValue value) override {
    values_.update([&](Values& values) { values[key] = std::move(value); });
  }

  bool removeAll() override {
    values_.set({});
    return true;
  }

  [[nodiscard]] Values values() const { return values_.get(); }
  void removeValue(const std::string& key) {
    values_.update([&](Values& values) { values.erase(key); });
  }

 private:
  Scripted<Values> values_;
};

}  // namespace kifo::testing
