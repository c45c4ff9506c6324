#pragma once

#include <QString>

namespace kifo {

/// How a button's title counts the seconds down: with "(" and " s)" around them the title "OK"
/// reads "OK (5 s)". **Threading:** a plain value.
struct ShowTimeoutConfiguration {
  QString prefix;  ///< Stands before the seconds; after the title and a blank.
  QString suffix;  ///< Stands after the seconds.
};

}  // namespace kifo
