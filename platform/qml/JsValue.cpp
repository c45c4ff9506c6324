#include "platform/qml/JsValue.h"

#include <QDateTime>
#include <QJSValueIterator>
#include <cmath>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "Kifo_iOS_Common_Kit/core/Console.h"
#include "Kifo_iOS_Common_Kit/core/Kifo.h"

namespace kifo {
namespace {

constexpr std::size_t kDeepest = 1000;  ///< Also ends a value that contains itself.
constexpr std::size_t kMost = 100'000;
constexpr double kLargestWhole = 9007199254740992.0;  ///< 2^53: above it doubles skip numbers.

Value numberOf(double number) {
  const bool isWhole = std::trunc(number) == number && std::abs(number) <= kLargestWhole;
  return isWhole ? Value(static_cast<std::int64_t>(number)) : Value(number);
}

/// A value that holds no others; none for a list or an object.
std::optional<Value> leafOf(const QJSValue& value) {
  if (value.isBool()) return Value(value.toBool());
  if (value.isNumber()) return numberOf(value.toNumber());
  if (value.isString()) return Value(value.toString().toStdString());
  if (value.isDate()) {
    return Value(value.toDateTime().toUTC().toString(Qt::ISODateWithMs).toStdString());
  }
  if (value.isUrl() || value.isVariant()) return Value(value.toString().toStdString());
  if (!value.isObject() || value.isCallable() || value.isQObject()) return Value();
  return std::nullopt;
}

/// A list or an object whose members are being read.
struct Container {
  explicit Container(const QJSValue& value) : source(value), isList(value.isArray()) {
    if (isList) {
      length = value.property(QStringLiteral("length")).toUInt();
    } else {
      members = std::make_unique<QJSValueIterator>(value);
    }
  }

  /// The next member; none after the last.
  std::optional<QJSValue> next() {
    if (isList) return index < length ? std::optional(source.property(index++)) : std::nullopt;
    if (!members->next()) return std::nullopt;
    key = members->name().toStdString();
    return members->value();
  }
  void add(Value value) {
    if (isList) {
      list.push_back(std::move(value));
    } else {
      map.insert_or_assign(key, std::move(value));
    }
  }
  Value finished() { return isList ? Value::list(std::move(list)) : Value::map(std::move(map)); }

  QJSValue source;
  bool isList;
  quint32 length = 0;
  quint32 index = 0;
  std::unique_ptr<QJSValueIterator> members;
  std::string key;
  Value::List list;
  Value::Map map;
};

}  // namespace

std::optional<Value> valueOf(const QJSValue& value) {
  if (auto leaf = leafOf(value)) return leaf;
  std::vector<Container> open;  // The containers that are not finished, from the outermost.
  open.emplace_back(value);
  for (std::size_t count = 0; count < kMost; ++count) {
    const auto member = open.back().next();
    if (!member) {
      Value finished = open.back().finished();
      open.pop_back();
      if (open.empty()) return finished;
      open.back().add(std::move(finished));
    } else if (auto leaf = leafOf(*member)) {
      open.back().add(std::move(*leaf));
    } else if (open.size() < kDeepest) {
      open.emplace_back(*member);
    } else {
      return std::nullopt;
    }
  }
  return std::nullopt;
}

Value::Map parametersOf(const QJSValue& value, std::string_view caller) {
  if (value.isUndefined()) return {};
  const auto refuse = [&](const char* why) {
    Console::print(Kifo::LOG_TAG, std::string(caller) + ": the parameters are left out: " + why);
    return Value::Map();
  };
  if (!value.isObject() || value.isArray() || leafOf(value)) {
    return refuse("they are no object, such as { items: 3 }");
  }
  const auto parameters = valueOf(value);
  if (!parameters) {
    return refuse("they contain themselves, are nested deeper than 1000 levels or too many");
  }
  return *parameters->asMap();
}

}  // namespace kifo
