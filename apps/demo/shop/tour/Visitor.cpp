#include "apps/demo/shop/tour/Visitor.h"

#include <QtTest/qtestspontaneevent.h>
#include <QApplication>
#include <QDir>
#include <QPixmap>
#include <QTest>
#include <QWheelEvent>
#include <QWindow>
#include <algorithm>
#include <cstdio>

#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopUpWindow.h"

namespace kifo::shop {
namespace {

constexpr int kPatience = 20000;  // milliseconds
constexpr int kMostTabs = 60;

/// The first usable control called `name` in the tree under `root`, depth first.
QAccessibleInterface* named(QAccessibleInterface* root, const QString& name) {
  if (root == nullptr || root->state().invisible) return nullptr;
  const bool isControl =
      root->role() != QAccessible::StaticText && root->role() != QAccessible::Dialog;
  if (isControl && root->text(QAccessible::Name) == name) return root;
  for (int index = 0; index < root->childCount(); ++index) {
    if (auto* found = named(root->child(index), name)) return found;
  }
  return nullptr;
}

/// Waits until `look` has seen the same a few times in a row; the event loop runs between.
template <class Look>
void waitUntilSame(Look look) {
  constexpr int same = 4;
  auto last = look();
  int count = 0;
  for (int round = 0; round < 100 && count < same; ++round) {
    QTest::qWait(60);
    auto now = look();
    count = now == last ? count + 1 : 0;
    last = std::move(now);
  }
}

bool complain(const QString& what) {
  std::printf("  wrong: %s\n", qPrintable(what));
  return false;
}

}  // namespace

Visitor::Visitor(QWidget& window, QString folder) : window_(window), folder_(std::move(folder)) {
  QDir().mkpath(folder_);
}

PopUpWindow* Visitor::popup() const {
  for (auto* popup : window_.findChildren<PopUpWindow*>(Qt::FindDirectChildrenOnly)) {
    if (popup->isVisible() && !popup->isDismissing()) return popup;
  }
  return nullptr;
}

QWidget* Visitor::alert() const {
  QWidget* uppermost = nullptr;
  for (auto* child : window_.findChildren<QWidget*>(Qt::FindDirectChildrenOnly)) {
    auto* interface = QAccessible::queryAccessibleInterface(child);
    const bool isAlert = interface != nullptr && interface->role() == QAccessible::AlertMessage;
    if (isAlert && child->isVisible()) uppermost = child;
  }
  return uppermost;
}

QList<QWidget*> Visitor::cards() const {
  const QWidget* overlay = alert();
  if (overlay == nullptr) return {};
  return overlay->findChildren<QWidget*>(Qt::FindDirectChildrenOnly);
}

Visitor::Found Visitor::find(const QString& name) {
  // What lies under a popup cannot be used.
  QWidget* root = popup() != nullptr ? static_cast<QWidget*>(popup()) : alert();
  if (root == nullptr) root = &window_;
  QAccessibleInterface* control = named(QAccessible::queryAccessibleInterface(root), name);
  if (control == nullptr) return {};
  return {control, window_.mapFromGlobal(control->rect().center())};
}

bool Visitor::click(const QString& name) {
  const Found found = find(name);
  if (found.control == nullptr) return complain("nothing is called " + name);
  QTest::mouseMove(window_.windowHandle(), found.middle);
  QTest::mouseClick(window_.windowHandle(), Qt::LeftButton, {}, found.middle);
  return true;
}

bool Visitor::pointAt(const QString& name) {
  const Found found = find(name);
  if (found.control == nullptr) return complain("nothing is called " + name);
  QTest::mouseMove(window_.windowHandle(), found.middle);
  return true;
}

void Visitor::press(Qt::Key key, int times, Qt::KeyboardModifiers modifiers) {
  for (int time = 0; time < times; ++time) QTest::keyClick(window_.windowHandle(), key, modifiers);
}

void Visitor::type(const QString& text) {
  for (const char32_t character : text.toStdU32String()) {
    QTest::sendKeyEvent(QTest::Click, window_.windowHandle(), Qt::Key_unknown,
                        QString::fromUcs4(&character, 1), Qt::NoModifier);
  }
}

bool Visitor::turnWheel(const QString& name, int notches) {
  const Found found = find(name);
  if (found.control == nullptr) return complain("nothing is called " + name);
  QWidget* under = window_.childAt(found.middle);
  const QPoint local = under->mapFrom(&window_, found.middle);
  for (int notch = 0; notch < std::abs(notches); ++notch) {
    QWheelEvent event(local, under->mapToGlobal(local), {}, {0, notches > 0 ? 120 : -120},
                      Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    // Only what comes from the window system is passed on to whoever scrolls.
    QSpontaneKeyEvent::setSpontaneous(&event);
    qApp->notify(under, &event);
  }
  return find(name).middle != found.middle || complain("the wheel does not move " + name);
}

bool Visitor::tabTo(const QString& name) {
  for (int tab = 0; tab < kMostTabs; ++tab) {
    const Found found = find(name);
    if (found.control != nullptr && found.control->state().focused) return true;
    press(Qt::Key_Tab);
  }
  return complain("Tab does not reach " + name);
}

bool Visitor::waitForPopup() {
  if (!QTest::qWaitFor([this] { return popup() != nullptr; }, kPatience)) {
    return complain("no popup came");
  }
  waitForStillness();
  return true;
}

bool Visitor::waitForNoPopup() {
  const auto isGone = [this] { return window_.findChild<PopUpWindow*>() == nullptr; };
  return QTest::qWaitFor(isGone, kPatience) || complain("the popup stays");
}

bool Visitor::waitForAlert() {
  // Its card fades in, and is without an effect once it has come.
  const auto hasCome = [this] {
    return std::ranges::all_of(cards(),
                               [](QWidget* card) { return card->graphicsEffect() == nullptr; });
  };
  if (!QTest::qWaitFor([&] { return alert() != nullptr && hasCome(); }, kPatience)) {
    return complain("no alert came");
  }
  // One on a spring swings past its place first: a click would miss what moves on under it.
  waitUntilSame([this] {
    QList<QRect> places;
    for (const QWidget* card : cards()) places << card->geometry();
    return places;
  });
  return true;
}

bool Visitor::waitForNoAlert() {
  return QTest::qWaitFor([this] { return alert() == nullptr; }, kPatience) ||
         complain("the alert stays");
}

bool Visitor::waitFor(const QString& name) {
  return QTest::qWaitFor([&] { return isShown(name); }, kPatience) ||
         complain(name + " does not appear");
}

void Visitor::waitForStillness() {
  waitUntilSame([this] { return window_.grab().toImage(); });
}

bool Visitor::isEnabled(const QString& name) {
  const Found found = find(name);
  return found.control != nullptr && !found.control->state().disabled;
}

bool Visitor::isShown(const QString& name) {
  return find(name).control != nullptr;
}

bool Visitor::picture(const QString& name) {
  const QString path = folder_ + "/" + name + ".png";
  return window_.grab().save(path) || complain("cannot write " + path);
}

}  // namespace kifo::shop
