#pragma once

#include <QPushButton>

#include "Kifo_iOS_Common_Kit/inapp/views/alertcore/KifoPopupStyle.h"

namespace kifo::shop {

/// A button of the alerts' page: the icon of an alert's style beside a few words.
class AlertsScreenTile : public QPushButton {
  Q_OBJECT

 public:
  AlertsScreenTile(KifoPopupStyle style, const QString& text, QWidget* parent = nullptr);

  void setOnDark(bool onDark);

  [[nodiscard]] QSize sizeHint() const override { return {200, 76}; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  const KifoPopupStyle style_;
  bool onDark_ = false;
};

}  // namespace kifo::shop
