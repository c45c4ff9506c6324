#include "testing/ui/User.h"

#include <QtTest/qtestspontaneevent.h>
#include <QGuiApplication>
#include <QTest>
#include <QTextBoundaryFinder>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <utility>

namespace kifo::testing {
namespace {

using Control = User::Control;
using Test = std::function<bool(Control)>;

constexpr int kLongestWait = 20'000;  // milliseconds
constexpr int kMostTabs = 60;
constexpr int kNotch = 120;  // in eighths of a degree

/// The first visible control that passes `test` in the tree under `root`, depth first.
Control search(Control root, const Test& test) {
  if (root == nullptr || root->state().invisible) return nullptr;
  if (test(root)) return root;
  for (int index = 0; index < root->childCount(); ++index) {
    if (Control found = search(root->child(index), test)) return found;
  }
  return nullptr;
}

bool isOverlay(Control control) {
  return control->role() == QAccessible::Dialog || control->role() == QAccessible::AlertMessage;
}

bool takesInput(Control control) {
  switch (control->role()) {
    case QAccessible::Button:
    case QAccessible::CheckBox:
    case QAccessible::RadioButton:
    case QAccessible::EditableText:
    case QAccessible::Slider:
      return true;
    default:
      return false;
  }
}

/// Whether the control's middle is not cut off by one of its parents.
bool isInSight(Control control) {
  const QPoint middle = control->rect().center();
  for (Control at = control->parent(); at != nullptr; at = at->parent()) {
    if (at->role() != QAccessible::Application && !at->rect().contains(middle)) return false;
  }
  return true;
}

/// Whether one of `area`'s controls is at that place of the screen.
bool isCovered(Control area, QPoint place) {
  for (Control at = area->childAt(place.x(), place.y()); at != nullptr;
       at = at->childAt(place.x(), place.y())) {
    if (takesInput(at)) return true;
  }
  return false;
}

void bringIntoSight(Control control) {
  if (isInSight(control)) return;
  if (auto* actions = control->actionInterface()) {
    actions->doAction(QAccessibleActionInterface::setFocusAction());
  }
}

QList<QRect> placesIn(Control control) {
  QList<QRect> places;
  search(control, [&](Control each) {
    places << each->rect();
    return false;
  });
  return places;
}

/// Waits until `look` has seen the same a few times in a row.
template <class Look>
void waitUntilSame(Look look) {
  constexpr int same = 4;
  auto last = look();
  for (int round = 0, count = 0; round < 100 && count < same; ++round) {
    QTest::qWait(60);
    auto now = look();
    count = now == last ? count + 1 : 0;
    last = std::move(now);
  }
}

}  // namespace

User::User(QWidget& window)
    : User(*window.windowHandle(), [&window] { return window.grab().toImage(); }) {}

User::User(QWindow& window, std::function<QImage()> picture)
    : window_(window), picture_(std::move(picture)) {}

// Finding ----------------------------------------------------------------------------------------

Control User::overlay() const {
  Control root = window_.accessibleRoot();
  for (int index = root->childCount() - 1; index >= 0; --index) {
    Control child = root->child(index);
    if (child != nullptr && isOverlay(child) && !child->state().invisible) return child;
  }
  return nullptr;
}

Control User::named(const QString& name) const {
  Control uppermost = overlay();
  return search(uppermost != nullptr ? uppermost : window_.accessibleRoot(), [&](Control each) {
    return !isOverlay(each) && each->role() != QAccessible::StaticText &&
           each->text(QAccessible::Name) == name;
  });
}

Control User::object(const QString& objectName, int index) const {
  Control uppermost = overlay();
  return search(uppermost != nullptr ? uppermost : window_.accessibleRoot(), [&](Control each) {
    return each->object() != nullptr && each->object()->objectName() == objectName && index-- == 0;
  });
}

bool User::isEnabled(const QString& name) const {
  Control control = named(name);
  return control != nullptr && !control->state().disabled;
}

Control User::checked(Control control, const QString& name) {
  if (control == nullptr) throw NotUsable("nothing that is shown is called " + name);
  if (control->state().disabled) throw NotUsable(name + " is disabled");
  return control;
}

QPoint User::middleOf(Control control) const {
  return window_.mapFromGlobal(control->rect().center());
}

// Doing ------------------------------------------------------------------------------------------

QPoint User::reachable(Control control) const {
  bringIntoSight(control);
  if (isInSight(control)) return middleOf(control);
  throw NotUsable(control->text(QAccessible::Name) + " is out of sight");
}

void User::click(Control control) {
  const QPoint middle = reachable(control);
  QTest::mouseMove(&window_, middle);
  QTest::mouseClick(&window_, Qt::LeftButton, {}, middle);
}

void User::tap(const QString& name) {
  static QPointingDevice* const finger = QTest::createTouchDevice();
  const QPoint middle = reachable(checked(named(name), name));
  QTest::touchEvent(&window_, finger).press(0, middle, &window_);
  QTest::touchEvent(&window_, finger).release(0, middle, &window_);
}

void User::clickBeside(Control area) {
  constexpr int step = 4;
  const QRect place = area->rect();
  for (int y = place.top(); y <= place.bottom(); y += step) {
    for (int x = place.left() + step; x <= place.right(); x += step) {
      if (isCovered(area, {x, y})) continue;
      return QTest::mouseClick(&window_, Qt::LeftButton, {}, window_.mapFromGlobal(QPoint(x, y)));
    }
  }
  throw NotUsable("it is covered by its controls");
}

void User::pointAt(const QString& name) {
  QTest::mouseMove(&window_, middleOf(checked(named(name), name)));
}

void User::press(Qt::Key key, int times, Qt::KeyboardModifiers modifiers) {
  for (int time = 0; time < times; ++time) QTest::keyClick(&window_, key, modifiers);
}

void User::type(const QString& text) {
  QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
  for (qsizetype from = 0; finder.toNextBoundary() > 0; from = finder.position()) {
    QTest::sendKeyEvent(QTest::Click, &window_, Qt::Key_unknown,
                        text.mid(from, finder.position() - from), Qt::NoModifier);
  }
}

void User::slide(Control slider, double value) {
  auto* values = slider->valueInterface();
  if (values == nullptr) throw NotUsable("it is no slider");
  const double nearest = std::clamp(std::trunc(value), values->minimumValue().toDouble(),
                                    values->maximumValue().toDouble());
  values->setCurrentValue(nearest);
}

void User::turnWheel(const QString& name, int notches) {
  const QPoint place = middleOf(checked(named(name), name));
  for (int notch = 0; notch < std::abs(notches); ++notch) {
    QWheelEvent event(place, window_.mapToGlobal(place), {}, {0, notches > 0 ? kNotch : -kNotch},
                      Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    // Only what comes from the window system is passed on to whoever scrolls.
    QSpontaneKeyEvent::setSpontaneous(&event);
    qApp->notify(&window_, &event);
  }
  if (middleOf(checked(named(name), name)) == place) {
    throw NotUsable("the wheel does not move " + name);
  }
}

void User::tabTo(const QString& name) {
  for (int tab = 0; tab < kMostTabs; ++tab) {
    Control control = named(name);
    if (control != nullptr && control->state().focused) return;
    press(Qt::Key_Tab);
  }
  throw NotUsable("Tab does not reach " + name);
}

// Seeing -----------------------------------------------------------------------------------------

void User::waitUntil(const std::function<bool()>& condition, const QString& what) {
  if (!QTest::qWaitFor(condition, kLongestWait)) throw NotUsable(what);
}

void User::waitFor(const QString& name) {
  waitUntil([&] { return named(name) != nullptr; }, name + " does not appear");
}

void User::waitForOverlay() {
  waitUntil([this] { return overlay() != nullptr; }, "no popup and no alert came");
  waitUntilSame([this] { return placesIn(overlay()); });
}

void User::waitForNoOverlay() {
  waitUntil([this] { return overlay() == nullptr; }, "the popup or alert stays");
}

void User::waitForStillness() {
  waitUntilSame([this] { return picture(); });
}

}  // namespace kifo::testing
