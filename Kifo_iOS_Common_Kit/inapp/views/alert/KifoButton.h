#pragma once

#include <QPushButton>

#include "Kifo_iOS_Common_Kit/inapp/views/alertcore/AlertButton.h"
#include "Kifo_iOS_Common_Kit/ports/Export.h"

namespace kifo {

/// A button of a `KifoPopup`, made by `KifoPopup::addButton`. The host may change what it does and
/// how it looks for as long as the alert lives.
///
/// Long titles wrap and make the button higher. An ampersand in a title is an ampersand.
///
/// **Threading:** UI thread only. **Ownership:** the alert's; `target` is held weakly.
class KIFO_EXPORT KifoButton : public QPushButton, public AlertButton {
  Q_OBJECT
 public:
  using Look = AlertButtonLook;

  explicit KifoButton(const QString& title, QWidget* parent = nullptr);

  void setLook(const Look& look);
  [[nodiscard]] const Look& look() const { return look_; }
  /// Darkens the button while a finger or key holds it down.
  void setDimmed(bool dimmed);

  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override;
  [[nodiscard]] bool hasHeightForWidth() const override { return true; }
  [[nodiscard]] int heightForWidth(int width) const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void setTitle(const QString& title, const QString& countdown) override;

 private:
  [[nodiscard]] QColor paintedBackground() const;

  Look look_;
  bool dimmed_ = false;
};

}  // namespace kifo
