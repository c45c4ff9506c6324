#pragma once

#include <QLineEdit>

#include "Kifo_iOS_Common_Kit/inapp/views/looks/PopupTheme.h"

namespace kifo {

/// The line into which an answer is typed. Whatever changes its text, be it keys, paste, drop, undo
/// or an input method, goes through `FreeTextRule`.
///
/// **Threading:** UI thread only.
class FreeTextField : public QLineEdit {
  Q_OBJECT

 public:
  FreeTextField(const PopupTheme& theme, QWidget* parent);

  [[nodiscard]] QSize minimumSizeHint() const override { return {0, 0}; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  PopupTheme theme_;
};

}  // namespace kifo
