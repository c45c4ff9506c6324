#pragma once

#include <QPointer>
#include <QWidget>
#include <string>

#include "Kifo_iOS_Common_Kit/events/KifoViewController.h"
#include "platform/qt/QtWindowProvider.h"

namespace kifo {

/// The screen that a `QtScreen` widget is to the SDK. It may outlive the widget for as long as an
/// event about it is under way; it then has no widget any more.
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
  /// The widget is going away: a screen that is still shown is reported as left.
  void detach();

  /// The name of a class without its namespaces: "HomeScreen" for "shop::HomeScreen". A widget
  /// without Q_OBJECT of its own, whose meta-object says `baseName`, goes by its C++ type.
  static std::string nameOf(const QWidget& widget, const char* baseName);

 private:
  const std::string className_;
  QPointer<QWidget> widget_;
  bool isLoaded_ = false;
  bool isShown_ = false;
};

}  // namespace kifo
