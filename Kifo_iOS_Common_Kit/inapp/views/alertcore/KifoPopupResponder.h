#pragma once

#include <QPointer>
#include <QString>
#include <functional>

#include "Kifo_iOS_Common_Kit/ports/Export.h"

namespace kifo {

class KifoAlert;

/// What every show call of an alert returns: closes the alert, changes it, asks about it.
///
///     const auto responder = alert->showWait("One moment", "Looking for the printer");
///     …
///     responder.close();
///
/// **Threading:** UI thread only. **Ownership:** holds the alert weakly; everything is harmless and
/// without effect once it is gone.
class KIFO_EXPORT KifoPopupResponder {
 public:
  explicit KifoPopupResponder(KifoAlert* alertview);

  /// The alert, or null when it is gone.
  [[nodiscard]] KifoAlert* alertview() const;
  void setTitle(const QString& title) const;
  void setSubTitle(const QString& subTitle) const;
  /// Hides the alert.
  void close() const;
  /// Sets what runs when the alert has gone from the screen.
  void setDismissBlock(std::function<void()> dismissBlock) const;
  /// Whether the alert is on the screen and not closing.
  [[nodiscard]] bool isShowing() const;

 private:
  QPointer<KifoAlert> alertview_;
};

}  // namespace kifo
