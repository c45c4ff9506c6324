#pragma once

#include <QPlainTextEdit>
#include <QPushButton>

#include "Kifo_iOS_Common_Kit/inapp/views/alert/AlertOverlay.h"
#include "Kifo_iOS_Common_Kit/inapp/views/alert/KifoButton.h"
#include "Kifo_iOS_Common_Kit/inapp/views/alert/KifoPopup.h"
#include "tests/views/Hosts.h"

#ifdef KIFO_WITH_QUICK
#include "Kifo_iOS_Common_Kit/inapp/quick/QuickAlert.h"
#include "Kifo_iOS_Common_Kit/inapp/quick/QuickAlertOverlay.h"
#include "tests/support/Common.h"
#endif

namespace kifo::testing {

/// One toolkit's host of 500 x 600 with a shortcut on Ctrl+D, for suites about alerts that run on
/// each.
class WidgetsAlerts : public WidgetsHost {
 public:
  using Alert = KifoPopup;

  WidgetsAlerts() : WidgetsHost({500, 600}, "Ctrl+D") {}

  void setDirection(Qt::LayoutDirection direction) { widget()->setLayoutDirection(direction); }
  void setUp(Alert& alert) const { alert.hostWindow = widget(); }

  /// The covers that are seen, the uppermost last.
  std::vector<QObject*> overlays() const {
    std::vector<QObject*> seen;
    if (!widget()) return seen;
    for (auto* each : widget()->findChildren<AlertOverlay*>(Qt::FindDirectChildrenOnly)) {
      if (each->isVisible()) seen.push_back(each);
    }
    return seen;
  }
  QRect card(const Alert& alert) const {
    return {alert.baseView()->mapTo(widget(), QPoint()), alert.baseView()->size()};
  }

  static QString titleOf(const KifoButton& button) { return button.text(); }
  static QString textOf(const QPlainTextEdit& view) { return view.toPlainText(); }

  /// A host's control of 300 x 40, called "Custom".
  static void addCustomView(Alert& alert) {
    auto* custom = new QPushButton("Custom");
    custom->setMinimumSize(300, 40);
    alert.customSubview = custom;
  }
  static void growCustomView(Alert& alert) { alert.customSubview->setMinimumHeight(140); }
};

#ifdef KIFO_WITH_QUICK
class QuickAlerts : public QuickHost {
 public:
  using Alert = QuickAlert;

  QuickAlerts() : QuickHost({500, 600}, "Ctrl+D") {}
  ~QuickAlerts() { setDirection(Qt::LeftToRight); }

  static void setDirection(Qt::LayoutDirection direction) {
    QGuiApplication::setLayoutDirection(direction);
  }
  void setUp(Alert& alert) const { alert.hostWindow = view(); }

  std::vector<QObject*> overlays() const {
    std::vector<QObject*> seen;
    if (!view()) return seen;
    for (auto* each : view()->contentItem()->findChildren<QuickAlertOverlay*>()) {
      if (each->isVisible()) seen.push_back(each);
    }
    return seen;
  }
  QRect card(const Alert& alert) const {
    return alert.baseView()->mapRectToScene(alert.baseView()->boundingRect()).toRect();
  }

  static QString titleOf(const QuickAlertButton& button) { return button.title(); }
  static QString textOf(const QuickAlertField& field) { return field.text(); }

  void addCustomView(Alert& alert) {
    alert.customSubview = make(R"(
      import QtQuick
      Item {
        implicitWidth: 300; implicitHeight: 40; activeFocusOnTab: true
        Accessible.role: Accessible.Button; Accessible.name: "Custom"
      })");
    alert.customSubview->setParent(view()->rootObject());
  }
  static void growCustomView(Alert& alert) { alert.customSubview->setImplicitHeight(140); }
};

using AlertToolkits = ::testing::Types<WidgetsAlerts, QuickAlerts>;
#else
using AlertToolkits = ::testing::Types<WidgetsAlerts>;
#endif

}  // namespace kifo::testing
