#pragma once

#include <QString>

namespace kifo {

/// One row of the list that an alert shows in its card. **Threading:** a plain value.
struct TypeData {
  QString header;  ///< What the row is about; stands on the leading side.
  QString value;   ///< Stands on the trailing side.
};

}  // namespace kifo
