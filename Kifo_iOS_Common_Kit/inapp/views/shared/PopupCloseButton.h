#pragma once

#include <QPushButton>

#include "Kifo_iOS_Common_Kit/inapp/views/shared/PopupControl.h"

namespace kifo {

/// The round button with a cross that stands above the panel. It lies on the dimmed host, so it
/// brings its own background.
///
/// **Threading:** UI thread only.
class PopupCloseButton : public PopupControl<QPushButton> {
  Q_OBJECT

 public:
  explicit PopupCloseButton(QWidget* parent) : PopupControl(parent) {}

 protected:
  void paintEvent(QPaintEvent* event) override;
};

}  // namespace kifo
