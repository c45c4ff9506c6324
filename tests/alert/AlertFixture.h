#pragma once

#include "tests/alert/AlertToolkits.h"
#include "tests/support/Common.h"
#include "tests/views/PopupFixture.h"

namespace kifo::testing {

/// Alerts over one toolkit's host, which do not move unless a test wants them
/// to. Controls are found by their accessible names.
template <class Toolkit>
class AlertFixture : public SettledTest {
 protected:
  using Alert = typename Toolkit::Alert;

  /// Hides what is still shown.
  ~AlertFixture() override {
    for (const auto& alert : alerts_) {
      if (const auto shown = alert.lock()) shown->hideView();
    }
    settle();
  }

  std::shared_ptr<Alert> makeAlert(KifoAppearance appearance = {}) {
    auto alert = std::make_shared<Alert>(std::move(appearance));
    toolkit.setUp(*alert);
    alert->motion.reduced = true;
    alerts_.push_back(alert);
    return alert;
  }

  void click(const QString& name) {
    user.click(name);
    settle();
  }
  void clickAt(QPoint place) {
    QTest::mouseClick(&toolkit.window(), Qt::LeftButton, {}, place);
    settle();
  }
  void tapAt(QPoint place) {
    static QPointingDevice* const finger = QTest::createTouchDevice();
    QTest::touchEvent(&toolkit.window(), finger).press(0, place, &toolkit.window());
    QTest::touchEvent(&toolkit.window(), finger).release(0, place, &toolkit.window());
  }
  void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    user.press(key, 1, modifiers);
    QCoreApplication::processEvents();
  }
  /// The accessible name of what has the focus; of the host's field, its object
  /// name.
  static QString focused() {
    QObject* object = QGuiApplication::focusObject();
    if (!object) return {};
    const QAccessibleInterface* known = QAccessible::queryAccessibleInterface(object);
    const QString name = known ? known->text(QAccessible::Name) : QString();
    return name.isEmpty() ? object->objectName() : name;
  }
  /// Where the first part of that role and name lies in the window; empty when
  /// there is none.
  QRect box(const QString& name, QAccessible::Role role = QAccessible::Button) {
    const QPoint origin = toolkit.window().mapToGlobal(QPoint());
    QAccessibleInterface* found = user.overlay() ? search(user.overlay(), name, role) : nullptr;
    return found ? found->rect().translated(-origin) : QRect();
  }
  QRect textBox(const QString& text) { return box(text, QAccessible::StaticText); }
  QRect fieldBox(const QString& name) { return box(name, QAccessible::EditableText); }
  QRect windowBox() { return {QPoint(), toolkit.window().size()}; }
  /// Waits until an alert that moves has come.
  void waitUntilCome() { user.waitForOverlay(); }

  Toolkit toolkit;
  User user{toolkit.window(), [this] { return toolkit.picture(); }};

 private:
  static QAccessibleInterface* search(QAccessibleInterface* at, const QString& name,
                                      QAccessible::Role role) {
    if (at->state().invisible) return nullptr;
    if (at->role() == role && at->text(QAccessible::Name) == name) return at;
    for (int i = 0; i < at->childCount(); ++i) {
      if (auto* found = search(at->child(i), name, role)) return found;
    }
    return nullptr;
  }

  std::vector<std::weak_ptr<Alert>> alerts_;
};

}  // namespace kifo::testing
