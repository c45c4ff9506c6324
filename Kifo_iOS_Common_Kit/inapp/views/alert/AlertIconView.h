#pragma once

#include <QBasicTimer>
#include <QWidget>

#include "Kifo_iOS_Common_Kit/inapp/views/alertcore/AlertIcon.h"

namespace kifo {

/// Shows an `AlertIcon`. The indicator's clock runs only while it can be seen.
///
/// **Threading:** UI thread only.
class AlertIconView : public QWidget {
  Q_OBJECT
 public:
  explicit AlertIconView(QWidget* parent = nullptr);

  void setIcon(const AlertIcon& icon);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void timerEvent(QTimerEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  void runClock();

  AlertIcon icon_;
  QBasicTimer clock_;
  int step_ = 0;
};

}  // namespace kifo
