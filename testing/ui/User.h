#pragma once

#include <QAccessible>
#include <QImage>
#include <QPoint>
#include <QString>
#include <QWidget>
#include <QWindow>
#include <functional>
#include <stdexcept>

namespace kifo::testing {

/// Uses a window as a person does: finds controls by the names that a screen reader reads, and
/// works them with mouse and keyboard through the window system.
///
///     testing::User user(window);
///     user.click("Edit address");
///     user.waitForOverlay();
///     user.type("12 Harbour Street");
///
/// It knows a window by its accessible tree alone, so that it serves widgets and Qt Quick alike.
/// Over the window's contents there may be dialogs and alerts: only the uppermost one can be used
/// then.
///
/// **Threading:** UI thread only; most operations run the event loop. A wait takes 20 s at most.
/// **Errors:** throws `NotUsable`, which says what is missing.
class User {
 public:
  class NotUsable : public std::runtime_error {
   public:
    explicit NotUsable(const QString& what) : std::runtime_error(what.toStdString()) {}
  };

  /// A control of the window; valid until the event loop runs. Null: there is none.
  using Control = QAccessibleInterface*;

  /// `window` must be shown.
  explicit User(QWidget& window);
  /// `picture` takes the window's picture.
  User(QWindow& window, std::function<QImage()> picture);

  // Finding. Only what is visible is found.

  /// The control of that accessible name.
  [[nodiscard]] Control named(const QString& name) const;
  /// The control of that object name, the `index`-th of several.
  [[nodiscard]] Control object(const QString& objectName, int index = 0) const;
  /// The uppermost dialog or alert.
  [[nodiscard]] Control overlay() const;
  /// Whether the control of that name is there and can be used.
  [[nodiscard]] bool isEnabled(const QString& name) const;

  // Doing. A control that is scrolled out of sight is brought into sight by giving it the focus.

  void click(const QString& name) { click(checked(named(name), name)); }
  void click(Control control);
  /// Touches the control with a finger.
  void tap(const QString& name);
  /// Clicks a place of `area` that none of the controls in it covers.
  void clickBeside(Control area);
  void pointAt(const QString& name);
  void press(Qt::Key key, int times = 1, Qt::KeyboardModifiers modifiers = {});
  /// Types into what has the focus, a key for each character that a person sees.
  void type(const QString& text);
  /// Moves a slider's thumb to the nearest value that it can have: the whole part of `value`,
  /// within the slider's range.
  void slide(Control slider, double value);
  /// Turns the wheel over the control, by notches; positive ones scroll up.
  void turnWheel(const QString& name, int notches);
  /// Gives the focus to the control by pressing Tab until it has it.
  void tabTo(const QString& name);

  // Seeing.

  void waitFor(const QString& name);
  /// Waits until a dialog or an alert is there and its parts rest at their places.
  void waitForOverlay();
  void waitForNoOverlay();
  /// Waits until nothing in the window changes.
  void waitForStillness();
  /// `what` says what did not happen when the time is over.
  static void waitUntil(const std::function<bool()>& condition, const QString& what);
  [[nodiscard]] QImage picture() const { return picture_(); }

  /// `control`, when there is one that can be used.
  static Control checked(Control control, const QString& name);

 private:
  [[nodiscard]] QPoint middleOf(Control control) const;
  /// The same, of a control that has been brought into sight.
  [[nodiscard]] QPoint reachable(Control control) const;

  QWindow& window_;
  const std::function<QImage()> picture_;
};

}  // namespace kifo::testing
