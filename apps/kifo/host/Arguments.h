#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "Kifo_iOS_Common_Kit/core/EventParameters.h"
#include "Kifo_iOS_Common_Kit/core/Record.h"
#include "Kifo_iOS_Common_Kit/core/Vocabulary.h"
#include "Kifo_iOS_Common_Kit/inapp/model/RecordFields.h"

namespace kifo::tool {

/// A line of a script that is not understood. What it says goes to whoever drives the host.
class BadLine : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The arguments of one line, by their labels:
///
///     const auto token = arguments.text("token");
///     arguments.finish();   // a label that nobody asked for is a mistake
///
/// A label that is left out and one that is null are the same. Asking for a label makes it known.
///
/// **Threading:** a plain value. **Errors:** throws `BadLine`, which names the label.
class Arguments {
 public:
  /// `object` must be a JSON object.
  explicit Arguments(nlohmann::json object) : object_(std::move(object)) {}

  /// Whether the label is there, be it with a null.
  [[nodiscard]] bool names(const std::string& label) const { return object_.contains(label); }
  /// Whether the label is there and not null.
  [[nodiscard]] bool has(const std::string& label) const;

  std::string text(const std::string& label);
  std::optional<std::string> optionalText(const std::string& label);
  bool flag(const std::string& label, bool otherwise);
  double number(const std::string& label);
  std::optional<double> optionalNumber(const std::string& label);
  /// A whole number from `least` to `most`.
  std::int64_t integer(const std::string& label, std::int64_t least, std::int64_t most);
  /// Bytes written as hexadecimal digits, two a byte.
  std::vector<std::uint8_t> bytes(const std::string& label);
  /// Any JSON, null when it is left out.
  nlohmann::json any(const std::string& label);
  /// A JSON object; empty when it is left out. So is the next one.
  EventParameters object(const std::string& label);
  Arguments arguments(const std::string& label);

  /// A record as the server would write it; null when it is left out.
  template <class Record>
  std::shared_ptr<Record> record(const std::string& label) {
    const nlohmann::json json = any(label);
    if (json.is_null()) return nullptr;
    auto decoded = decode<Record>(json.dump());
    if (!decoded) throw BadLine("\"" + label + "\" does not decode");
    return decoded;
  }

  /// The case whose raw string the text is.
  template <class Enumeration>
  Enumeration enumeration(const std::string& label) {
    const std::string raw = text(label);
    const auto found = fromRawValue<Enumeration>(raw);
    if (!found) throw BadLine("\"" + label + "\" cannot be \"" + raw + "\"");
    return *found;
  }
  template <class Enumeration>
  Enumeration enumeration(const std::string& label, Enumeration otherwise) {
    known_.insert(label);
    return has(label) ? enumeration<Enumeration>(label) : otherwise;
  }

  /// Makes a label known that has no meaning here.
  void ignore(const std::string& label) { known_.insert(label); }
  /// Refuses labels that nobody asked for.
  void finish() const;

 private:
  const nlohmann::json& required(const std::string& label, bool (nlohmann::json::*is)() const,
                                 const char* what);

  nlohmann::json object_;
  std::set<std::string> known_;
};

}  // namespace kifo::tool
