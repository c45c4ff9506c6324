#pragma once

#include <QPointer>

#include "Kifo_iOS_Common_Kit/inapp/views/shared/OverlayFocus.h"

namespace kifo {

class AlertCard;

/// The keyboard focus of an alert, which also knows whether the user is at work inside with it.
///
/// **Threading:** UI thread only.
class AlertFocus : public OverlayFocus {
  Q_OBJECT
 public:
  AlertFocus(QWidget* overlay, const AlertCard* card);

  /// The user has put the focus somewhere, or has typed.
  void engage();
  /// Whether the user works inside with the keyboard, in a window that is active.
  [[nodiscard]] bool isEngaged() const;

 Q_SIGNALS:
  /// The user has moved the focus.
  void moved(QWidget* to);
  void engagementChanged();

 protected:
  [[nodiscard]] QList<QWidget*> stops() const override;

 private:
  QPointer<const AlertCard> card_;
  bool engaged_ = false;
};

}  // namespace kifo
