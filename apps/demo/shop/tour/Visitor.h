#pragma once

#include <QAccessible>
#include <QList>
#include <QPoint>
#include <QString>
#include <QWidget>

namespace kifo {
class PopUpWindow;
}

namespace kifo::shop {

/// Someone who uses the shop's window as a person would: finds controls by the names that a screen
/// reader hears, and works them with mouse and keyboard through the window system.
///
/// **Threading:** UI thread only; waiting runs the event loop. **Errors:** false, with the reason
/// printed.
class Visitor {
 public:
  /// Pictures go to `folder`, which is made.
  Visitor(QWidget& window, QString folder);

  /// Clicks the middle of the control that is called `name`.
  bool click(const QString& name);
  /// Moves the pointer there without clicking.
  bool pointAt(const QString& name);
  void press(Qt::Key key, int times = 1, Qt::KeyboardModifiers modifiers = {});
  void type(const QString& text);
  /// Turns the wheel over the control: positive amounts scroll up, 1 is a notch.
  bool turnWheel(const QString& name, int notches);

  /// Gives the keyboard's focus to the control by pressing Tab until it has it.
  bool tabTo(const QString& name);

  /// Waits until a popup stands still over the window; null when none comes.
  bool waitForPopup();
  bool waitForNoPopup();
  /// Waits until an alert has come and rests at its place; what turns or counts on it need not
  /// stand still.
  bool waitForAlert();
  bool waitForNoAlert();
  /// Waits until the control can be found.
  bool waitFor(const QString& name);
  /// Waits until nothing in the window moves.
  void waitForStillness();

  /// Whether the control is there and can be used.
  bool isEnabled(const QString& name);
  bool isShown(const QString& name);

  /// Saves the window as "<name>.png".
  bool picture(const QString& name);

 private:
  struct Found {
    QAccessibleInterface* control = nullptr;
    QPoint middle;  ///< In the window's coordinates.
  };

  Found find(const QString& name);
  PopUpWindow* popup() const;
  /// What covers the window for the uppermost alert; null without one.
  QWidget* alert() const;
  /// What lies on it: the alert's card.
  QList<QWidget*> cards() const;

  QWidget& window_;
  const QString folder_;
};

}  // namespace kifo::shop
