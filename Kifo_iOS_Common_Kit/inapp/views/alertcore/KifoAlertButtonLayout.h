#pragma once

namespace kifo {

/// How an alert's buttons stand. A row that does not fit the window becomes a column.
enum class KifoAlertButtonLayout { horizontal, vertical };

}  // namespace kifo
