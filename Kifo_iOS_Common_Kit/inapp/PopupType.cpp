#include "Kifo_iOS_Common_Kit/inapp/PopupType.h"

#include <array>

namespace kifo {
namespace {

using namespace std::string_view_literals;

constexpr std::array kRawValues{"POPUP"sv, "SURVEY"sv, "EMOJI"sv, "SCORE"sv, "OPEN_ENDED"sv};

}  // namespace

std::string_view rawValue(PopupType value) {
  return kRawValues[static_cast<std::size_t>(value)];
}

std::optional<PopupType> popupType(std::string_view text) {
  for (std::size_t ordinal = 0; ordinal < kRawValues.size(); ++ordinal) {
    if (kRawValues[ordinal] == text) return static_cast<PopupType>(ordinal);
  }
  return std::nullopt;
}

}  // namespace kifo
