#include "Kifo_iOS_Common_Kit/core/ValueJson.h"

#include <algorithm>
#include <utility>
#include <vector>

#include <nlohmann/json.hpp>

namespace kifo {
namespace {

using nlohmann::json;

bool isPlain(char c) {
  return static_cast<signed char>(c) >= ' ' && c != '"' && c != '\\';
}

void writeText(std::string& out, const std::string& text) {
  if (std::ranges::all_of(text, isPlain)) {
    out.append(1, '"').append(text).append(1, '"');
  } else {
    out += json(text).dump(-1, ' ', false, json::error_handler_t::replace);
  }
}

void writeScalar(std::string& out, const Value& value) {
  switch (value.kind()) {
    case Value::Kind::boolean:
      out += *value.asBoolean() ? "true" : "false";
      break;
    case Value::Kind::integer:
      out += std::to_string(*value.asInteger());
      break;
    case Value::Kind::unsignedInteger:
      out += std::to_string(*value.asUnsigned());
      break;
    case Value::Kind::number:
      out += json(*value.asNumber()).dump();
      break;
    case Value::Kind::text:
      writeText(out, *value.asText());
      break;
    default:
      out += "null";
  }
}

/// Writes values. Containers that are begun and not ended stand on a stack of its own, so that deep
/// values cannot overflow the thread's.
class Writer {
 public:
  std::string write(const Value& value) {
    writeValue(value);
    return finish();
  }
  std::string write(const Value::Map& members) {
    begin(members);
    return finish();
  }

 private:
  /// The elements that are still to be written, of a list or of a map.
  struct Open {
    const Value* element = nullptr;
    const Value* elementsEnd = nullptr;
    Value::Map::const_iterator member = {};
    Value::Map::const_iterator membersEnd = {};
    bool isMap = false;
    bool isFirst = true;
  };

  void begin(const Value::List& list) {
    out_ += '[';
    open_.push_back({list.data(), list.data() + list.size()});
  }
  void begin(const Value::Map& map) {
    out_ += '{';
    open_.push_back({nullptr, nullptr, map.begin(), map.end(), true});
  }

  void writeValue(const Value& value) {
    if (const auto* list = value.asList()) return begin(*list);
    if (const auto* map = value.asMap()) return begin(*map);
    writeScalar(out_, value);
  }

  std::string finish() {
    while (!open_.empty()) next();
    return std::move(out_);
  }

  /// Writes the next element of the innermost container, or its end.
  void next() {
    Open& open = open_.back();
    const bool isAtEnd = open.isMap ? open.member == open.membersEnd  //
                                    : open.element == open.elementsEnd;
    if (isAtEnd) {
      out_ += open.isMap ? '}' : ']';
      return open_.pop_back();
    }
    if (!std::exchange(open.isFirst, false)) out_ += ',';
    if (!open.isMap) return writeValue(*open.element++);
    const auto& [key, value] = *open.member++;
    writeText(out_, key);
    out_ += ':';
    writeValue(value);
  }

  std::string out_;
  std::vector<Open> open_;
};

/// Builds a value from the parser's calls. The parser keeps its own stack on the heap too.
class Reader final : public nlohmann::json_sax<json> {
 public:
  Value take() { return std::move(result_); }

  bool null() override { return add(Value()); }
  bool boolean(bool value) override { return add(value); }
  bool number_integer(number_integer_t value) override { return add(value); }
  bool number_unsigned(number_unsigned_t value) override { return add(value); }
  bool number_float(number_float_t value, const string_t&) override { return add(value); }
  bool string(string_t& text) override { return add(std::move(text)); }
  bool binary(binary_t&) override { return false; }
  bool start_object(std::size_t) override { return begin(true); }
  bool start_array(std::size_t) override { return begin(false); }
  bool key(string_t& key) override {
    open_.back().key = std::move(key);
    return true;
  }
  bool end_object() override { return end(); }
  bool end_array() override { return end(); }
  bool parse_error(std::size_t, const std::string&, const json::exception&) override {
    return false;
  }

 private:
  struct Open {
    bool isMap;
    std::string key = {};  ///< Of the member whose value comes next.
    Value::Map members = {};
    Value::List elements = {};
  };

  bool begin(bool isMap) {
    open_.push_back({isMap});
    return true;
  }

  bool end() {
    Open done = std::move(open_.back());
    open_.pop_back();
    return add(done.isMap ? Value(std::move(done.members)) : Value(std::move(done.elements)));
  }

  bool add(Value value) {
    if (open_.empty()) {
      result_ = std::move(value);
    } else if (Open& open = open_.back(); open.isMap) {
      open.members.insert_or_assign(std::move(open.key), std::move(value));
    } else {
      open.elements.push_back(std::move(value));
    }
    return true;
  }

  std::vector<Open> open_;
  Value result_;
};

}  // namespace

std::string jsonFromValue(const Value& value) {
  return Writer().write(value);
}

std::string jsonFromValue(const Value::Map& members) {
  return Writer().write(members);
}

std::optional<Value> valueFromJson(std::string_view text) {
  Reader reader;
  if (!json::sax_parse(text, &reader)) return std::nullopt;
  return reader.take();
}

}  // namespace kifo
