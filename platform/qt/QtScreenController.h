#pragma once

#include <QPointer>
#include <QWidget>
#include <string>

#include "Kifo_iOS_Common_Kit/events/KifoViewController.h"
#include "platform/qt/QtWindowProvider.h"

namespace kifo {

/// The SDK's view of a `QtScreen` widget. It may outlive the widget while an event about it is
/// under way; `widget` is null then.
///
/// **Threading:** UI thread only, but for `className`.
class KIFO_EXPORT QtScreenController final : public KifoViewController, public QtWidgetProvider {
 public:
  /// `className` is the name under which the screen is reported.
  QtScreenController(QWidget* widget, std::string className);

  [[nodiscard]] std::string className() const override { return className_; }
  [[nodiscard]] QWidget* widget() const override { return widget_; }

  /// The widget is about to be shown, was shown, is hidden. Calls that change nothing are ignored.
  void willShow();
  void didShow();
  void didHide();
  /// The widget is being destroyed: a screen that is still shown sends "page_out".
  void detach();

  /// The name of a class without its namespaces: "HomeScreen" for "shop::HomeScreen". A widget
  /// without Q_OBJECT of its own, whose meta-object says `baseName`, has the name of its C++ type.
  static std::string nameOf(const QWidget& widget, const char* baseName);

 private:
  const std::string className_;
  QPointer<QWidget> widget_;
  bool isLoaded_ = false;
  bool isShown_ = false;
};

}  // namespace kifo
