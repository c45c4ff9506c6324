#include "Kifo_iOS_Common_Kit/inapp/views/shared/Accessibility.h"

#include <QAccessibleWidget>
#include <QVariant>
#include <QWidget>

namespace kifo {
namespace {

constexpr const char* kRole = "kifoAccessibleRole";

class Interface : public QAccessibleWidget {
 public:
  Interface(QWidget* widget, QAccessible::Role role) : QAccessibleWidget(widget, role) {}

  [[nodiscard]] QAccessible::State state() const override {
    auto state = QAccessibleWidget::state();
    state.modal = role() == QAccessible::Dialog || role() == QAccessible::AlertMessage;
    return state;
  }

  [[nodiscard]] QStringList actionNames() const override {
    QStringList names = QAccessibleWidget::actionNames();
    if (role() == QAccessible::Link) names.prepend(pressAction());
    return names;
  }

  void doAction(const QString& name) override {
    // By name: the panel that has the signal is in a folder above this one.
    const bool isPress = name == pressAction() && role() == QAccessible::Link;
    if (!isPress || !QMetaObject::invokeMethod(object(), "pressed")) {
      QAccessibleWidget::doAction(name);
    }
  }

 protected:
  ~Interface() override = default;
};

QAccessibleInterface* make(const QString&, QObject* object) {
  auto* widget = qobject_cast<QWidget*>(object);
  const QVariant role = widget ? widget->property(kRole) : QVariant();
  return role.isValid() ? new Interface(widget, static_cast<QAccessible::Role>(role.toInt()))
                        : nullptr;
}

}  // namespace

void setAccessibleRole(QWidget* widget, QAccessible::Role role) {
  static const bool installed = [] {
    QAccessible::installFactory(make);
    return true;
  }();
  Q_UNUSED(installed)
  widget->setProperty(kRole, static_cast<int>(role));
  renewAccessible(widget);
}

void announceOpening(QWidget* overlay) {
  QAccessibleEvent event(overlay, QAccessible::Alert);
  QAccessible::updateAccessibility(&event);
}

void renewAccessible(QWidget* widget) {
  QAccessibleInterface* known = QAccessible::queryAccessibleInterface(widget);
  if (known) QAccessible::deleteAccessibleInterface(QAccessible::uniqueId(known));
}

}  // namespace kifo
