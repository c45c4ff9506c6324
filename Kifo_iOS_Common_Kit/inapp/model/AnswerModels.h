#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace kifo {

/// The score that a user chose, with what was typed beside it.
struct ScoreFieldModel {
  std::int64_t value = 0;
  std::optional<std::string> freeText;
};

/// The answer to an open-ended question.
struct OpenEndedFieldModel {
  std::optional<std::string> freeText;
};

/// The choice or the emoji that a user picked, with what was typed beside it. The spelling of the
/// names is kept for compatibility.
struct ChoiseFieldModel {
  std::string choiseId;
  std::string text;
  std::optional<std::string> freeText;
};

}  // namespace kifo
