#pragma once

#include <memory>

#include "platform/qt/popups/PopupRouter.h"

namespace kifo {

/// The popups over windows of Qt Widgets hosts.
///
/// **Threading:** UI thread only. **Ownership:** belongs to the application.
class QtPopupRouter : public PopupRouter {
  Q_OBJECT

 public:
  QtPopupRouter(PopUpOptions options, QObject* parent);

  void accept(const std::shared_ptr<const PopupRequest>& request) override;

 protected:
  [[nodiscard]] std::unique_ptr<WindowPopups> makeQueue(QObject* window) override;

 private:
  const PopUpOptions options_;
};

}  // namespace kifo
