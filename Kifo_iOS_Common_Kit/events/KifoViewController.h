#pragma once

#include <memory>
#include <string_view>

#include "Kifo_iOS_Common_Kit/core/ViewController.h"
#include "Kifo_iOS_Common_Kit/ports/Export.h"

namespace kifo {

/// A screen that reports itself: showing it sends "page_in" under its class name and asks the
/// server for its campaigns anew, hiding it sends "page_out". Derive from it, call the four
/// operations from the toolkit's own, and hold the screen in a shared pointer.
///
/// **Threading:** the host's UI thread; returns without waiting.
class KIFO_EXPORT KifoViewController : public ViewController,
                                       public std::enable_shared_from_this<KifoViewController> {
 public:
  static constexpr std::string_view LOG_TAG =
      "Kifo KifoViewController:";  ///< Starts its console lines.

  virtual void viewDidLoad();
  virtual void viewWillAppear(bool animated);
  virtual void viewDidAppear(bool animated);
  virtual void viewWillDisappear(bool animated);
};

}  // namespace kifo
