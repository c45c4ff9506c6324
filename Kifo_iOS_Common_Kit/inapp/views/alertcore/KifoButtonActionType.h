#pragma once

namespace kifo {

/// What pressing a `KifoButton` does.
enum class KifoButtonActionType {
  none = 0,      ///< Nothing but a console line.
  selector = 1,  ///< Invokes `KifoButton::selector` on `KifoButton::target`.
  closure = 2,   ///< Runs `KifoButton::action`.
};

}  // namespace kifo
