#pragma once

#include <QRadioButton>

#include "Kifo_iOS_Common_Kit/inapp/views/shared/PopupControl.h"

namespace kifo {

/// One of several options that exclude each other. It shows as chosen what it is told to; pressing
/// it only says so. It paints nothing: the cell that it lies in does, and is repainted with it.
///
/// **Threading:** UI thread only.
class OptionButton : public PopupControl<QRadioButton> {
  Q_OBJECT

 public:
  explicit OptionButton(QWidget* cell) : PopupControl(cell) {
    // Exclusive, so that assistive technology hears of a radio button; alone in its cell it
    // excludes nothing by itself. Assistive technology toggles what it takes for any radio button:
    // that is a press like others.
    connect(this, &QAbstractButton::toggled, this, [this](bool checked) {
      if (telling_) return;
      setChosen(!checked);
      click();
    });
  }

  void setChosen(bool chosen) {
    telling_ = true;
    setChecked(chosen);
    telling_ = false;
    parentWidget()->update();
  }

 protected:
  void nextCheckState() override {}
  void paintEvent(QPaintEvent*) override {}
  bool event(QEvent* event) override {
    switch (event->type()) {
      case QEvent::FocusIn:
      case QEvent::FocusOut:
      case QEvent::HoverEnter:
      case QEvent::HoverLeave:
      case QEvent::MouseButtonPress:
      case QEvent::MouseButtonRelease:
        parentWidget()->update();
        break;
      default:
        break;
    }
    return PopupControl::event(event);
  }

 private:
  bool telling_ = false;  ///< The state is being set, not toggled.
};

}  // namespace kifo
