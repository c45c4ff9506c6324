#pragma once

#include <QString>

namespace kifo {

/// How much a user may type: 150 bytes of UTF-8, never half a character, and no blank at the start.
///
/// **Threading:** pure functions.
struct FreeTextRule {
  static constexpr int freeTextMaksCount = 150;

  struct Verdict {
    enum class Kind { accept, refuse, replaceAll };
    Kind kind = Kind::accept;
    QString text;  ///< With `replaceAll`, the whole new text; the caret goes to its end.
  };

  /// What becomes of typing or pasting `replacement` into a field that holds `current`. An empty
  /// replacement is a deletion.
  static Verdict shouldChange(const QString& current, const QString& replacement);

  static int bytes(const QString& text);

  /// "12/150" for a text of 12 bytes.
  static QString count(const QString& text);
};

}  // namespace kifo
