#include "Kifo_iOS_Common_Kit/inapp/views/KifoPopupAccessible.h"

#include <QAccessible>
#include <QAccessibleWidget>

#include "Kifo_iOS_Common_Kit/inapp/views/KifoPopupOverlay.h"
#include "Kifo_iOS_Common_Kit/inapp/views/PopupAccessibility.h"

namespace kifo {
namespace {

class AlertInterface : public QAccessibleWidget {
 public:
  explicit AlertInterface(QWidget* overlay)
      : QAccessibleWidget(overlay, QAccessible::AlertMessage) {}

  QAccessible::State state() const override {
    QAccessible::State state = QAccessibleWidget::state();
    state.modal = true;
    return state;
  }
};

QAccessibleInterface* makeInterface(const QString& /*className*/, QObject* object) {
  auto* overlay = qobject_cast<KifoPopupOverlay*>(object);
  return overlay == nullptr ? nullptr : new AlertInterface(overlay);
}

}  // namespace

void KifoPopupAccessible::announce(QWidget* overlay) {
  static const bool installed = [] {
    QAccessible::installFactory(makeInterface);
    return true;
  }();
  Q_UNUSED(installed)
  renewAccessible(overlay);
  QAccessibleEvent event(overlay, QAccessible::Alert);
  QAccessible::updateAccessibility(&event);
}

}  // namespace kifo
