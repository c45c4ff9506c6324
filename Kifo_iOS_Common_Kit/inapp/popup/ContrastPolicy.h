#pragma once

namespace kifo {

/// What a popup does about a campaign's text that cannot be read on the campaign's background.
enum class ContrastPolicy {
  off,      ///< Every colour as the campaign gives it, white on white included.
  legible,  ///< Large or bold text has at least 3:1 of contrast, all other text 4.5:1.
  strong,   ///< Every text has at least 4.5:1.
};

}  // namespace kifo
