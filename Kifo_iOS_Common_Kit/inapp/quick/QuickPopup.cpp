#include "Kifo_iOS_Common_Kit/inapp/quick/QuickPopup.h"

#include <utility>

namespace kifo {

QuickPopup::QuickPopup(std::shared_ptr<const PopupRequest> request, PopUpOptions options)
    : request_(std::move(request)), options_(std::move(options)) {}

void QuickPopup::present(QQuickWindow& window) {
  cover(window);
  takeFocus(this);
}

}  // namespace kifo
