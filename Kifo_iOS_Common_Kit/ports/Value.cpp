#include "Kifo_iOS_Common_Kit/ports/Value.h"

namespace kifo {
namespace {

/// Holds a list or a map on the heap.
struct Node {
  virtual ~Node() = default;
  Node* next = nullptr;  ///< Of those that wait to be deleted.
};

template <class Container>
struct NodeOf final : Node {
  explicit NodeOf(Container from) : content(std::move(from)) {}
  const Container content;
};

/// Deletes a node. The nodes that only its content held are deleted after it and not inside its
/// destructor: nested destructors would need stack for each level.
void destroy(Node* node) noexcept {
  thread_local Node* waiting = nullptr;
  thread_local bool destroying = false;
  node->next = std::exchange(waiting, node);
  if (destroying) return;
  destroying = true;
  while (waiting) delete std::exchange(waiting, waiting->next);
  destroying = false;
}

template <class Container>
std::shared_ptr<const Container> share(Container content) {
  auto* node = new NodeOf<Container>(std::move(content));
  return {std::shared_ptr<Node>(node, destroy), &node->content};
}

const Value& null() {
  static const Value& only = *new Value;
  return only;
}

using Pair = std::pair<const Value*, const Value*>;

/// Compares the sizes and the keys of two containers and leaves their elements to be compared.
bool sameShape(const Value::List& left, const Value::List& right, std::vector<Pair>& pending) {
  if (left.size() != right.size()) return false;
  for (std::size_t i = 0; i < left.size(); ++i) pending.emplace_back(&left[i], &right[i]);
  return true;
}

bool sameShape(const Value::Map& left, const Value::Map& right, std::vector<Pair>& pending) {
  if (left.size() != right.size()) return false;
  for (auto l = left.begin(), r = right.begin(); l != left.end(); ++l, ++r) {
    if (l->first != r->first) return false;
    pending.emplace_back(&l->second, &r->second);
  }
  return true;
}

}  // namespace

Value::Value(unsigned long long value) {
  if (value <= INT64_MAX) {
    data_ = static_cast<std::int64_t>(value);
  } else {
    data_ = static_cast<std::uint64_t>(value);
  }
}

Value::Value(const char* text) {
  if (text) data_ = std::string(text);
}

Value::Value(List elements) : data_(share(std::move(elements))) {}

Value::Value(Map members) : data_(share(std::move(members))) {}

Value::Value(std::initializer_list<std::pair<const std::string, Value>> members)
    : Value(Map(members)) {}

Value& Value::operator=(Value&& other) noexcept {
  // `other` may be inside the container that this assignment destroys.
  Data data = std::exchange(other.data_, std::monostate());
  data_ = std::move(data);
  return *this;
}

std::optional<bool> Value::asBoolean() const {
  const auto* value = std::get_if<bool>(&data_);
  return value ? std::optional(*value) : std::nullopt;
}

std::optional<std::int64_t> Value::asInteger() const {
  const auto* value = std::get_if<std::int64_t>(&data_);
  return value ? std::optional(*value) : std::nullopt;
}

std::optional<std::uint64_t> Value::asUnsigned() const {
  if (const auto* value = std::get_if<std::uint64_t>(&data_)) return *value;
  const auto value = asInteger();
  return value && *value >= 0 ? std::optional(static_cast<std::uint64_t>(*value)) : std::nullopt;
}

std::optional<double> Value::asNumber() const {
  if (const auto* value = std::get_if<double>(&data_)) return *value;
  if (const auto value = asInteger()) return static_cast<double>(*value);
  if (const auto value = asUnsigned()) return static_cast<double>(*value);
  return std::nullopt;
}

const Value::List* Value::asList() const {
  const auto* list = std::get_if<std::shared_ptr<const List>>(&data_);
  return list ? list->get() : nullptr;
}

const Value::Map* Value::asMap() const {
  const auto* map = std::get_if<std::shared_ptr<const Map>>(&data_);
  return map ? map->get() : nullptr;
}

const Value& Value::operator[](std::string_view key) const {
  const Map* map = asMap();
  if (!map) return null();
  const auto found = map->find(std::string(key));
  return found == map->end() ? null() : found->second;
}

const Value& Value::operator[](std::size_t index) const {
  const List* list = asList();
  return list && index < list->size() ? (*list)[index] : null();
}

bool Value::equals(const Value& other) const {
  std::vector<Pair> pending{{this, &other}};
  while (!pending.empty()) {
    const auto [left, right] = pending.back();
    pending.pop_back();
    // Copies share their containers, and scalars compare by value.
    if (left->data_ == right->data_) continue;
    const bool same = left->kind() == right->kind() &&
                      (left->asList()  ? sameShape(*left->asList(), *right->asList(), pending)
                       : left->asMap() ? sameShape(*left->asMap(), *right->asMap(), pending)
                                       : false);
    if (!same) return false;
  }
  return true;
}

}  // namespace kifo
