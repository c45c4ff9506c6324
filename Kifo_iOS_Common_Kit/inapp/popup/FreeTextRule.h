#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "Kifo_iOS_Common_Kit/ports/Export.h"

namespace kifo {

/// How much a user may type: 150 bytes of UTF-8, never half a character, and no blank at the start.
/// That bytes are counted is kept for compatibility.
///
/// **Threading:** pure functions.
struct KIFO_SHARED FreeTextRule {
  /// Bytes. The spelling is kept for compatibility.
  static constexpr int freeTextMaksCount = 150;
  /// From here on the counter warns that little is left.
  static constexpr int warnsFrom = 140;

  /// What becomes of a change.
  struct Verdict {
    enum class Kind {
      accept,
      refuse,
      cut,  ///< Only what fits into `free` bytes is appended, and the caret goes to the end.
    };
    Kind kind = Kind::accept;
    std::size_t free = 0;  ///< Bytes; the toolkit cuts between two characters.
  };

  /// What becomes of typing or pasting `replacement` into a field that holds `current`. An empty
  /// replacement is a deletion.
  static Verdict shouldChange(std::string_view current, std::string_view replacement);

  /// "12/150" for a text of 12 bytes.
  static std::string count(std::string_view text);
};

}  // namespace kifo
