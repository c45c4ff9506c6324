#pragma once

namespace kifo {

/// The way that an alert comes; it leaves by the way it came.
enum class KifoAnimationStyle { noAnimation, topToBottom, bottomToTop, leftToRight, rightToLeft };

}  // namespace kifo
