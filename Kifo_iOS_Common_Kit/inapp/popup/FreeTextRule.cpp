#include "Kifo_iOS_Common_Kit/inapp/popup/FreeTextRule.h"

namespace kifo {

FreeTextRule::Verdict FreeTextRule::shouldChange(std::string_view current,
                                                 std::string_view replacement) {
  constexpr std::size_t kMost = freeTextMaksCount;
  if (current.empty() && replacement == " ") return {Verdict::Kind::refuse};
  // Text of fewer than 150 bytes has fewer than 150 characters: there is no limit of those to
  // check.
  if (replacement.empty() || replacement.size() + current.size() < kMost) return {};
  return {Verdict::Kind::cut, kMost > current.size() ? kMost - current.size() : 0};
}

std::string FreeTextRule::count(std::string_view text) {
  return std::to_string(text.size()) + "/" + std::to_string(freeTextMaksCount);
}

}  // namespace kifo
