#pragma once

#include <memory>
#include <vector>

#include <QPoint>
#include <QPointer>

#include "Kifo_iOS_Common_Kit/inapp/popup/PopupState.h"
#include "Kifo_iOS_Common_Kit/inapp/views/looks/PanTracker.h"
#include "Kifo_iOS_Common_Kit/inapp/views/looks/PopUpOptions.h"
#include "Kifo_iOS_Common_Kit/inapp/views/shared/Overlay.h"

class QDataStream;
class QTimer;

namespace kifo {

class PopupFade;
class PopupKeyboard;
class PopupPictures;
class PopUpWindowView;

/// One campaign over the host's window: shows the panel, keeps what the user chose and reports the
/// answer, or the close without one. One popup gives one answer: what is pressed while the host's
/// callback for an answer runs does nothing.
///
///     auto* popup = new kifo::PopUpWindow(request, options, hostWindow);
///     connect(popup, &kifo::PopUpWindow::closed, this, &Presenter::showNext);
///     popup->present();
///
/// With a parent it is an overlay that covers the parent and follows its size. Without one it is a
/// frameless, translucent window whose geometry the caller sets, for hosts whose window is no
/// QWidget.
///
/// **Threading:** UI thread only. The request's callbacks run on it, with nothing locked; they may
/// close or delete anything, this window included.
/// **Ownership:** belongs to its parent and deletes itself once it is closed. A parent that is
/// deleted takes it along without a report and without `closed`; watch `destroyed` for that.
/// **Errors:** none reach the user; a picture that cannot be had leaves its place empty.
class PopUpWindow : public Overlay {
  Q_OBJECT

 public:
  PopUpWindow(std::shared_ptr<const PopupRequest> request, PopUpOptions options,
              QWidget* parent = nullptr);
  /// Popups are not archived: fatal.
  explicit PopUpWindow(QDataStream& archive);
  ~PopUpWindow() override;

  /// Shows the popup: covers the parent, fades in, takes the focus.
  void present();

  /// Stops the carousel and fades out; `closed` follows. Reports nothing. Calling it again, or
  /// while the window is still fading in, is harmless.
  void dismissView();

  [[nodiscard]] bool isDismissing() const { return dismissing_; }
  [[nodiscard]] const PopupState& state() const { return state_; }
  [[nodiscard]] PopUpWindowView* popUpWindowView() const { return popUpWindowView_; }
  /// Runs while the carousel advances by itself; null otherwise.
  [[nodiscard]] QTimer* timer() const;

  /// What the close button does: dismisses, then reports the item without any answer.
  void closeButtonAction();
  /// What the submit button does. With nothing chosen in a survey or among emojis the popup stays.
  void submitButtonPressed();
  /// One tick of the carousel: to the next page, from the last one back to the first.
  void scrollImageListTimer();
  void stopTimer();
  /// Takes the focus from the free-text field and puts the on-screen keyboard away.
  void dismissKeyboard();
  /// Lifts the view by half of the keyboard's height, once; an empty rectangle is ignored.
  void keyboardWillShow(const QRectF& keyboard);
  void keyboardWillHide();
  /// A touch that no control took: follows the item's action when it has one.
  void touchesBegan();

 Q_SIGNALS:
  /// The popup is gone from the screen. Sent once, before the window deletes itself.
  void closed();

 protected:
  void place() override;
  [[nodiscard]] bool takesKey(int key) const override;
  void focusArrived(QWidget* widget, bool byUser) override;
  void closeEvent(QCloseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;

 private:
  void nameIt();
  void connectParts();
  void wireButtons();
  void fillList();
  void fillEmojis();
  [[nodiscard]] double screenWidth() const;

  [[nodiscard]] bool takesAnswer() const { return !dismissing_ && !state_.isAnswering; }
  /// Chooses an option or an emoji.
  void choose(const PopupState::Button& button);
  /// Runs the host's `action`, which may do anything to us, and closes.
  void press(const PopupRequest::ButtonCallback& action, const PopupState::Button& button);
  void showPage(int page);
  void dismiss();
  void setOpacity(double opacity);
  void faded();

  std::shared_ptr<const PopupRequest> request_;
  PopUpOptions options_;
  PopupState state_;
  PopUpWindowView* popUpWindowView_ = nullptr;
  PopupFade* fade_ = nullptr;
  PopupKeyboard* keyboard_ = nullptr;
  PopupPictures* pictures_ = nullptr;
  PanTracker pan_;
  QPointer<QWidget> pressed_;  ///< What lies under a press that no control took.
  bool pressing_ = false;
  bool presented_ = false;
  bool dismissing_ = false;
  bool gone_ = false;
};

}  // namespace kifo
