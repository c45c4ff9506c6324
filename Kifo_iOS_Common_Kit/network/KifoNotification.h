#pragma once

#include <any>
#include <string>

namespace kifo {

/// What a notification center hands round: a name and whom it is about.
struct KifoNotification {
  std::string name;
  std::any object;  ///< Empty when it is about nobody.
};

}  // namespace kifo
