#pragma once

#include <memory>
#include <vector>

#include <QPoint>
#include <QPointer>
#include <QWidget>

#include "Kifo_iOS_Common_Kit/inapp/PopupRequest.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopupState.h"
#include "Kifo_iOS_Common_Kit/inapp/views/shared/PanTracker.h"
#include "Kifo_iOS_Common_Kit/inapp/views/shared/PopUpOptions.h"
#include "Kifo_iOS_Common_Kit/ports/Export.h"

class QTimer;

namespace kifo {

class OverlayFocus;
class PopUpWindowAnswer;
class PopupFade;
class PopupKeyboard;
class PopupPictures;
class PopUpWindowView;

/// One campaign over the host's window: dims the window, shows the panel, keeps what the user chose
/// and reports the answer, or the close without one.
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
class KIFO_EXPORT PopUpWindow : public QWidget {
  Q_OBJECT

 public:
  PopUpWindow(std::shared_ptr<const PopupRequest> request, PopUpOptions options,
              QWidget* parent = nullptr);
  ~PopUpWindow() override;

  /// Shows the popup: covers the parent, fades in, takes the focus.
  void present();

  /// Stops the carousel and fades out; `closed` follows. Reports nothing. Calling it again, or
  /// while the window is still fading in, is harmless.
  void dismissView();

  [[nodiscard]] bool isDismissing() const { return dismissing_; }
  [[nodiscard]] const PopupState& fields() const { return fields_; }
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
  bool event(QEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;
  bool focusNextPrevChild(bool next) override;
  void closeEvent(QCloseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  using Button = std::shared_ptr<AppCommunicationItemButton>;

  void connectParts();
  void wireButtons();
  void fillList();
  void fillEmojis();
  void placeView();
  [[nodiscard]] double screenWidth() const;

  /// Runs `select` on what was chosen, unless the popup is on its way out.
  void choose(void (PopUpWindowAnswer::*select)(const Button&), const Button& button);
  void press(const PopupRequest::ButtonCallback& action, const Button& button);
  void dismiss();
  void faded();

  std::shared_ptr<const PopupRequest> request_;
  PopUpOptions options_;
  PopupState fields_;
  PopUpWindowView* popUpWindowView_ = nullptr;
  OverlayFocus* focus_ = nullptr;
  PopupFade* fade_ = nullptr;
  PopupKeyboard* keyboard_ = nullptr;
  PopupPictures* pictures_ = nullptr;
  std::unique_ptr<PopUpWindowAnswer> answer_;
  PanTracker pan_;
  QPointer<QWidget> pressed_;  ///< What lies under a press that no control took.
  bool pressing_ = false;
  bool presented_ = false;
  bool dismissing_ = false;
  bool gone_ = false;
};

}  // namespace kifo
