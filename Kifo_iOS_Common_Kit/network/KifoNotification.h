#pragma once

#include <any>
#include <string>

namespace kifo {

/// What a notification center delivers: a name and the object that it is about.
struct KifoNotification {
  std::string name;
  std::any object;  ///< Empty without one.
};

}  // namespace kifo
