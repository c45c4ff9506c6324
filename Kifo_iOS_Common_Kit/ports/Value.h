#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "Kifo_iOS_Common_Kit/ports/Export.h"

namespace kifo {

/// A value of an event's parameters or of a push's user info. It is made implicitly from C++
/// values:
///
///     kifo::KifoEventManager::sendEvent("basket_opened", std::nullopt,
///                                       {{"items", 3},
///                                        {"price", 12.5},
///                                        {"tags", kifo::Value::list({"new", "sale"})},
///                                        {"customer", {{"name", "Ada"}, {"member", true}}}});
///
/// A `char` counts as a number. A null `const char*` gives null. An unsigned integer of at most
/// `INT64_MAX` is stored as a signed one, so that each whole number has one kind.
///
/// Values may be nested without limit: copying, comparing and destroying use a constant amount of
/// stack at any depth.
///
/// **Threading:** a plain value. Lists and maps are immutable and shared between copies, so a copy
/// costs at most one text; copies may be used on different threads.
/// **Errors:** nothing here throws but `std::bad_alloc`. Reading a value as another kind gives null
/// or `std::nullopt`.
class KIFO_EXPORT Value {
 public:
  using List = std::vector<Value>;
  using Map = std::map<std::string, Value>;  ///< Keys in the order of their bytes.

  enum class Kind {
    null,
    boolean,
    integer,          ///< A whole number that fits `std::int64_t`.
    unsignedInteger,  ///< A whole number above `INT64_MAX`.
    number,           ///< A double.
    text,             ///< UTF-8. Bytes that are none become U+FFFD in JSON.
    list,
    map
  };

  Value() = default;
  Value(std::nullptr_t) {}
  Value(bool value) : data_(value) {}
  Value(int value) : Value(static_cast<long long>(value)) {}
  Value(unsigned value) : Value(static_cast<unsigned long long>(value)) {}
  Value(long value) : Value(static_cast<long long>(value)) {}
  Value(unsigned long value) : Value(static_cast<unsigned long long>(value)) {}
  Value(long long value) : data_(static_cast<std::int64_t>(value)) {}
  Value(unsigned long long value);
  Value(double value) : data_(value) {}
  Value(const char* text);
  Value(std::string_view text) : data_(std::string(text)) {}
  Value(std::string text) : data_(std::move(text)) {}
  Value(List elements);
  Value(Map members);
  Value(std::initializer_list<std::pair<const std::string, Value>> members);
  Value(const void*) = delete;  ///< A pointer is no boolean.

  static Value list(List elements = {}) { return Value(std::move(elements)); }
  static Value map(Map members = {}) { return Value(std::move(members)); }

  Value(const Value&) = default;
  Value& operator=(const Value&) = default;
  /// A value that was moved from is null.
  Value(Value&& other) noexcept : data_(std::exchange(other.data_, std::monostate())) {}
  Value& operator=(Value&& other) noexcept;
  ~Value() = default;

  [[nodiscard]] Kind kind() const { return static_cast<Kind>(data_.index()); }
  [[nodiscard]] bool isNull() const { return kind() == Kind::null; }

  [[nodiscard]] std::optional<bool> asBoolean() const;
  /// None for a whole number above `INT64_MAX` and for a double.
  [[nodiscard]] std::optional<std::int64_t> asInteger() const;
  /// None for a negative number and for a double.
  [[nodiscard]] std::optional<std::uint64_t> asUnsigned() const;
  /// Any number, rounded to the nearest double.
  [[nodiscard]] std::optional<double> asNumber() const;
  /// Null for another kind; valid as long as this value is unchanged. So are the next two.
  [[nodiscard]] const std::string* asText() const { return std::get_if<std::string>(&data_); }
  [[nodiscard]] const List* asList() const;
  [[nodiscard]] const Map* asMap() const;

  /// The member of that key; a null value where there is none and in another kind than a map.
  [[nodiscard]] const Value& operator[](std::string_view key) const;
  /// The element at `index`; a null value behind the end and in another kind than a list.
  [[nodiscard]] const Value& operator[](std::size_t index) const;
  [[nodiscard]] const Value& operator[](int index) const {
    return (*this)[static_cast<std::size_t>(index)];
  }

  /// Equal in kind and content: 3 is not 3.0.
  friend bool operator==(const Value& left, const Value& right) { return left.equals(right); }

 private:
  using Data = std::variant<std::monostate, bool, std::int64_t, std::uint64_t, double, std::string,
                            std::shared_ptr<const List>, std::shared_ptr<const Map>>;

  [[nodiscard]] bool equals(const Value& other) const;

  Data data_;  ///< In the order of `Kind`. The pointers are never null.
};

}  // namespace kifo
