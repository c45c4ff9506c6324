#pragma once

#include <QPointer>
#include <QWidget>
#include <QWindow>

#include "Kifo_iOS_Common_Kit/core/ViewController.h"
#include "platform/qt/QtWindowProvider.h"
#include "tests/support/Common.h"

namespace kifo::testing {

/// A host's screen that is a widget, for as long as that is there.
class WidgetScreen final : public ViewController, public QtWidgetProvider {
 public:
  explicit WidgetScreen(QWidget* widget) : widget_(widget) {}
  [[nodiscard]] std::string className() const override { return "WidgetScreen"; }
  [[nodiscard]] QWidget* widget() const override { return widget_; }

 private:
  QPointer<QWidget> widget_;
};

/// A host's screen that has a window of its own.
class WindowScreen final : public ViewController, public QtWindowProvider {
 public:
  explicit WindowScreen(QWindow* window) : window_(window) {}
  [[nodiscard]] std::string className() const override { return "WindowScreen"; }
  [[nodiscard]] QWindow* window() const override { return window_; }

 private:
  QPointer<QWindow> window_;
};

}  // namespace kifo::testing
