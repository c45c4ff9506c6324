#pragma once

#include <memory>
#include <string>

#include "Kifo_iOS_Common_Kit/ports/Export.h"

namespace kifo {

/// A screen of the host, as far as the SDK knows screens: it has a class name, and popups are shown
/// over the window that it is in.
///
/// **Ownership:** the SDK holds screens weakly, so hosts hand them over as shared pointers; a
/// screen that is gone is simply not shown over.
/// **Threading:** `className` may be called from any thread and must always give the same text.
class KIFO_EXPORT ViewController {
 public:
  virtual ~ViewController() = default;

  /// The class's name without namespaces, such as "HomeScreen"; it is the page name by default.
  [[nodiscard]] virtual std::string className() const = 0;
};

}  // namespace kifo
