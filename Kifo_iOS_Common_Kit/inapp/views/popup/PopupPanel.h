#pragma once

#include <QWidget>

#include "Kifo_iOS_Common_Kit/inapp/views/looks/PopupTheme.h"

namespace kifo {

/// The rounded card that holds the campaign. When the item has an action the card itself can be
/// reached and pressed with the keyboard.
///
/// **Threading:** UI thread only.
class PopupPanel : public QWidget {
  Q_OBJECT

 public:
  PopupPanel(const PopupTheme& theme, QWidget* parent);

  void setPressable(const QString& accessibleName);

 Q_SIGNALS:
  /// Enter or Space, or assistive technology.
  void pressed();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;

 private:
  PopupTheme theme_;
};

}  // namespace kifo
