#pragma once

#include <chrono>

namespace kifo {

/// How long an alert's animations take. A duration of zero is no animation.
///
/// Nothing moves either while the desktop asks for reduced motion: by the settings of Plasma and
/// GTK, and over Qt Widgets by a style whose `QStyle::SH_Widget_Animation_Duration` is zero. The
/// indicator of the wait style alone goes on turning, because it is the message.
///
/// **Threading:** a plain value.
struct AlertMotion {
  std::chrono::milliseconds showDuration{250};
  std::chrono::milliseconds hideDuration{200};
  std::chrono::milliseconds springDuration{500};  ///< Showing with `dynamicAnimatorActive`.
  bool reduced = false;                           ///< The host asks for reduced motion.
};

}  // namespace kifo
