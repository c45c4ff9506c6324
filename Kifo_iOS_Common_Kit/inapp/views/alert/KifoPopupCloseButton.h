#pragma once

#include <QColor>
#include <QIcon>
#include <QPushButton>

namespace kifo {

/// The cross in the corner of an alert's card: the host's image or a drawn one. Its place is larger
/// than what is seen, for fingers.
///
/// **Threading:** UI thread only.
class KifoPopupCloseButton : public QPushButton {
  Q_OBJECT
 public:
  explicit KifoPopupCloseButton(QWidget* parent = nullptr);

  /// `image`: null for the drawn cross.
  void setLook(const QIcon& image, const QColor& color);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QIcon image_;
  QColor color_;
};

}  // namespace kifo
