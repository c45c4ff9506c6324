#pragma once

namespace kifo::testing {

/// The last element. An empty list fails the test and does not end the process, as `back` may.
template <class List>
auto last(const List& list) {
  return list.at(list.size() - 1);
}

}  // namespace kifo::testing
