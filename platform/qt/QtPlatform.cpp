#include "platform/qt/QtPlatform.h"

#include <utility>

#include "platform/qt/QtPasteboard.h"
#include "platform/qt/QtPopupPresenter.h"
#ifdef KIFO_HAS_QT_POSITIONING
#include "platform/qt/QtPositionSource.h"
#endif

namespace kifo {

Platform withQt(Platform platform, PopUpOptions options) {
  platform.popups = std::make_shared<QtPopupPresenter>(std::move(options));
  platform.pasteboard = std::make_shared<QtPasteboard>();
#ifdef KIFO_HAS_QT_POSITIONING
  platform.position = std::make_shared<QtPositionSource>();
#endif
  return platform;
}

}  // namespace kifo
