#pragma once

#include <string>
#include <string_view>

namespace kifo::tool {

/// How text is written for a person. Colour appears on a terminal alone, and not where NO_COLOR
/// asks for none.
///
/// **Threading:** immutable.
class Terminal {
 public:
  enum class Color { red, green, yellow, grey };

  /// `descriptor` is the one that the text goes to.
  explicit Terminal(int descriptor);

  [[nodiscard]] bool isTerminal() const { return isTerminal_; }
  [[nodiscard]] std::string paint(Color color, std::string_view text) const;

  /// `text` on one line and without anything that could steer a terminal.
  static std::string plain(std::string_view text);
  /// `text` in columns of a terminal, filled up with blanks or cut off with "…".
  static std::string fitted(std::string_view text, std::size_t columns);

 private:
  const bool isTerminal_;
  const bool hasColor_;
};

}  // namespace kifo::tool
