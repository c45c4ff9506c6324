#include "platform/qt/QtPlatform.h"

#include <utility>

#include "platform/qt/QtPopupPresenter.h"
#include "platform/qt/QtServices.h"

namespace kifo {

Platform withQt(Platform platform, PopUpOptions options) {
  platform.popups = std::make_shared<QtPopupPresenter>(std::move(options));
  return withQtServices(std::move(platform));
}

}  // namespace kifo
