#pragma once

#include <QImage>
#include <QString>
#include <QWindow>
#include <functional>
#include <memory>
#include <string>

#include "Kifo_iOS_Common_Kit/inapp/PopupRequest.h"
#include "Kifo_iOS_Common_Kit/inapp/popup/PopupState.h"
#include "Kifo_iOS_Common_Kit/inapp/views/looks/PopUpOptions.h"

namespace kifo::testing {

/// One toolkit's host and popup, for suites that run on each: a window with one text field of the
/// host's, called "hostField", which has the focus.
class PopupToolkit {
 public:
  virtual ~PopupToolkit() = default;

  static std::unique_ptr<PopupToolkit> widgets();
  static std::unique_ptr<PopupToolkit> quick();

  virtual void resize(QSize size) = 0;
  virtual void present(std::shared_ptr<const PopupRequest> request,
                       const PopUpOptions& options) = 0;
  virtual void dismiss() = 0;
  virtual void keyboard(const QRectF& rectangle) = 0;
  /// Null once the popup is gone.
  [[nodiscard]] virtual const PopupState* state() const = 0;
  [[nodiscard]] virtual QWindow& window() = 0;
  [[nodiscard]] virtual QImage picture() = 0;
  /// What is typed into the host's field.
  [[nodiscard]] virtual QString hostText() const = 0;

  int closings = 0;
};

}  // namespace kifo::testing
