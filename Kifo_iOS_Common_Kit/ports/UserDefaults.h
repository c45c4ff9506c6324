#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <variant>

#include "Kifo_iOS_Common_Kit/ports/Export.h"

namespace kifo {

using DefaultsValue = std::variant<bool, std::int64_t, double, std::string>;

/// A few values that outlive the process.
///
/// **Threading:** thread-safe. A value that was set is seen at once by every thread of the process;
/// it is written behind the caller's back, whole or not at all.
/// **Errors:** a store that cannot be read counts as empty; one that cannot be written keeps its
/// values for the life of the process and says so on the console once.
class KIFO_EXPORT UserDefaults {
 public:
  virtual ~UserDefaults() = default;

  [[nodiscard]] virtual std::optional<DefaultsValue> value(const std::string& key) const = 0;
  virtual void setValue(const std::string& key, DefaultsValue value) = 0;
  /// Forgets every value and erases what was written, before it returns. False when something that
  /// was written may still be there. Called on the main queue.
  virtual bool removeAll() = 0;

  /// The text stored under `key`; none when nothing is stored or it is no text.
  [[nodiscard]] std::optional<std::string> string(const std::string& key) const;
  /// The number stored under `key`, a text that is wholly a number included; 0.0 otherwise.
  [[nodiscard]] double number(const std::string& key) const;
  /// `number`, truncated toward zero and clamped to the type's range; a not-a-number gives 0.
  [[nodiscard]] std::int64_t integer(const std::string& key) const;
};

}  // namespace kifo
