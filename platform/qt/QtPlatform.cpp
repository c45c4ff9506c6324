#include "platform/qt/QtPlatform.h"

#include <utility>

#include "platform/qt/QtPasteboard.h"
#include "platform/qt/QtPopupPresenter.h"

namespace kifo {

Platform withQt(Platform platform, PopUpOptions options) {
  platform.popups = std::make_shared<QtPopupPresenter>(std::move(options));
  platform.pasteboard = std::make_shared<QtPasteboard>();
  return platform;
}

}  // namespace kifo
