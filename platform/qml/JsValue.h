#pragma once

#include <QJSValue>
#include <optional>
#include <string_view>

#include "Kifo_iOS_Common_Kit/ports/Value.h"

namespace kifo {

/// A JavaScript value as a value of an event's parameters. Whole numbers become integers, dates
/// texts of the form "2026-03-01T09:30:00.000Z"; null, undefined, functions and objects of Qt's
/// become null. It takes a constant amount of stack at any depth.
///
/// **Threading:** the engine's thread.
/// **Errors:** none for what contains itself, is nested deeper than 1,000 levels or has more than
/// 100,000 values.
[[nodiscard]] std::optional<Value> valueOf(const QJSValue& value);

/// The parameters of an event, or none: `value` is no object, or has no value. Each is a console
/// line that names `caller`, unless `value` is undefined.
[[nodiscard]] Value::Map parametersOf(const QJSValue& value, std::string_view caller);

}  // namespace kifo
