#pragma once

#include <optional>

#include <QIcon>
#include <QPushButton>

#include "Kifo_iOS_Common_Kit/inapp/views/shared/PopupControl.h"

namespace kifo {

/// The button with a cross that closes a popup or an alert. A finger may press its whole rectangle;
/// what is seen is the disc of diameter 32 in its middle, and a cross or the host's image on it.
///
/// **Threading:** UI thread only.
class CloseButton : public PopupControl<QPushButton> {
  Q_OBJECT

 public:
  explicit CloseButton(QWidget* parent);

  /// `image`: null for the drawn cross. `behind`: what the button lies on. `disc`: its own ground,
  /// for a button that does not lie on a card; without one it is seen only while pointed at.
  void setLook(const QIcon& image, const QColor& behind, const std::optional<QColor>& disc);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QIcon image_;
  QColor behind_ = Qt::white;
  std::optional<QColor> disc_ = Qt::white;
};

}  // namespace kifo
