#pragma once

#include <optional>
#include <string>

#include "Kifo_iOS_Common_Kit/core/Record.h"

namespace kifo {

/// The free-text question that goes with an answer.
///
/// A value: copies are independent.
struct DefaultFreeText {
  std::optional<std::string> textColor;  ///< Hex text.
  std::optional<std::string> questionText;
};

template <>
struct RecordFields<DefaultFreeText> {
  static constexpr auto fields = std::tuple(field("textColor", &DefaultFreeText::textColor),
                                            field("questionText", &DefaultFreeText::questionText));
};

}  // namespace kifo
