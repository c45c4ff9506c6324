#pragma once

#include <memory>
#include <optional>

#include <QFont>
#include <QPalette>
#include <QTimer>
#include <QVariantAnimation>

#include "Kifo_iOS_Common_Kit/inapp/popup/PopupState.h"
#include "Kifo_iOS_Common_Kit/inapp/quick/PopupParts.h"
#include "Kifo_iOS_Common_Kit/inapp/quick/QuickOverlay.h"
#include "Kifo_iOS_Common_Kit/inapp/quick/QuickScrolling.h"
#include "Kifo_iOS_Common_Kit/inapp/views/looks/FreeTextValidator.h"
#include "Kifo_iOS_Common_Kit/inapp/views/looks/PopUpOptions.h"

namespace kifo {

class PopupFade;
class PopupKeyboard;
class QuickPictures;
class QuickScroll;

/// One campaign over the content of a scene: keeps what the user chose and reports the answer, or
/// the close without one. One popup gives one answer: what is pressed while the host's callback for
/// an answer runs does nothing.
///
///     auto* popup = new kifo::QuickPopup(request, options);
///     connect(popup, &kifo::QuickPopup::closed, this, &Presenter::showNext);
///     popup->present(window);
///
/// `Popup.qml` arranges its items.
///
/// **Threading:** UI thread only. The request's callbacks run on it, with nothing locked; they may
/// close or delete anything, this popup included.
/// **Ownership:** once presented it belongs to the scene and deletes itself when it is closed. A
/// window that is deleted takes it along without a report and without `closed`.
/// **Errors:** none reach the user; a picture that cannot be had leaves its place empty.
class QuickPopup : public kifo::QuickOverlay {
  Q_OBJECT
  QML_NAMED_ELEMENT(QuickPopup)
  QML_UNCREATABLE("Campaigns make their popups.")
  Q_PROPERTY(QString name READ name NOTIFY remade)
  Q_PROPERTY(QString details READ details NOTIFY remade)
  Q_PROPERTY(double fade READ fade NOTIFY fadeChanged)
  Q_PROPERTY(double lift READ lift NOTIFY laidOut)
  Q_PROPERTY(QRectF extent READ extent NOTIFY laidOut)
  Q_PROPERTY(int rows READ rows NOTIFY remade)
  Q_PROPERTY(bool hasList READ hasList CONSTANT)
  Q_PROPERTY(bool isPlain READ isPlain CONSTANT)
  Q_PROPERTY(bool isPressable READ isPressable CONSTANT)
  Q_PROPERTY(bool isSubmitFixed READ isSubmitFixed NOTIFY laidOut)
  Q_PROPERTY(QString fieldName READ fieldName NOTIFY remade)
  Q_PROPERTY(QFont fieldFont READ fieldFont NOTIFY remade)
  Q_PROPERTY(QColor fieldColor READ fieldColor NOTIFY remade)
  Q_PROPERTY(QColor selectionColor READ selectionColor NOTIFY remade)
  Q_PROPERTY(QColor selectedColor READ selectedColor NOTIFY remade)
  Q_PROPERTY(QValidator* validator READ validator CONSTANT)
  Q_PROPERTY(QString freeText READ freeText WRITE setFreeText NOTIFY freeTextChanged)

 public:
  QuickPopup(std::shared_ptr<const PopupRequest> request, PopUpOptions options);
  ~QuickPopup() override;

  /// Shows the popup: covers the window, fades in, takes the focus.
  void present(QQuickWindow& window);
  /// Stops the carousel and fades out; `closed` follows. Reports nothing.
  void dismissView();
  [[nodiscard]] bool isDismissing() const { return dismissing_; }
  [[nodiscard]] const PopupState& state() const { return state_; }

  // For the items.
  [[nodiscard]] PopupParts& parts() { return *parts_; }
  [[nodiscard]] QString name() const { return parts_->content().name; }
  [[nodiscard]] QString details() const { return parts_->content().details; }
  [[nodiscard]] double fade() const;
  [[nodiscard]] double lift() const;
  [[nodiscard]] QRectF extent() const { return parts_->extent(); }
  [[nodiscard]] int rows() const { return static_cast<int>(parts_->rows().size()); }
  [[nodiscard]] bool hasList() const { return parts_->has(PopupPiece::list); }
  [[nodiscard]] bool isPlain() const { return state_.popupType == PopupType::popup; }
  [[nodiscard]] bool isPressable() const { return state_.bodyButton() != nullptr; }
  [[nodiscard]] bool isSubmitFixed() const { return parts_->place().isSubmitFixed; }
  [[nodiscard]] QString fieldName() const { return parts_->content().fieldName; }
  [[nodiscard]] QFont fieldFont() const { return parts_->theme().font(TextRole::field); }
  [[nodiscard]] QColor fieldColor() const;
  [[nodiscard]] QColor selectionColor() const { return parts_->theme().accent; }
  [[nodiscard]] QColor selectedColor() const;
  [[nodiscard]] QValidator* validator() { return &validator_; }
  [[nodiscard]] QString freeText() const { return QString::fromStdString(state_.freeText); }
  void setFreeText(const QString& text);
  [[nodiscard]] bool isChosen(int row) const;
  [[nodiscard]] bool isCopied() const { return copied_; }
  [[nodiscard]] double openness() const { return openness_; }
  /// The row that the Tab key stops at, where a question has one stop.
  [[nodiscard]] int stopRow() const { return stopRow_; }
  void setStopRow(int row);
  /// The emoji whose text is shown for a moment; -1 for none.
  [[nodiscard]] int namedEmoji() const { return namedEmoji_; }
  [[nodiscard]] QuickPictures& pictures() { return *pictures_; }
  void addScroll(QuickScroll* scroll);

  // What the user does.
  void pressRow(int row);
  void submitButtonPressed();
  void copyButtonPressed();
  void closeButtonAction();
  /// A touch that no control took: follows the item's action when it has one.
  void touchesBegan();
  void setScore(float value);
  void holdScore(bool holds);
  /// Enter in the free-text field.
  Q_INVOKABLE void fieldDone();
  void keyboardWillShow(const QRectF& keyboard);
  void keyboardWillHide();

 Q_SIGNALS:
  /// The popup is gone from the screen. Sent once, before the item deletes itself.
  void closed();
  void fadeChanged();
  /// Parts have other places.
  void laidOut();
  /// Any of the parts may look or read differently.
  void changed();
  /// Only this one does.
  void pieceChanged(kifo::PopupPiece piece);
  /// One of the areas that scroll shows another stretch of its content.
  void scrolled();
  /// The parts were made anew.
  void remade();
  void freeTextChanged();

 protected:
  void place() override;
  void remake() override;
  [[nodiscard]] bool takesKey(int key) const override;
  void focusArrived(QQuickItem* item, bool byUser) override;
  void keyPressEvent(QKeyEvent* event) override;
  void pressed(QPointF position, QPoint global) override;
  void moved(QPoint global) override;
  void released() override;

 private:
  void makeParts();
  void makeItems();
  void arrange();
  [[nodiscard]] double screenWidth() const;
  [[nodiscard]] bool takesAnswer() const { return !dismissing_ && !state_.isAnswering; }
  void press(const PopupRequest::ButtonCallback& action, const PopupState::Button& button);
  void choose(int row);
  void showScore();
  void showFreeText();
  void moveOpennessTo(double openness);
  void dismissKeyboard();
  void dismiss();
  void faded();

  const std::shared_ptr<const PopupRequest> request_;
  const PopUpOptions options_;
  PopupState state_;
  std::unique_ptr<PopupParts> parts_;
  FreeTextValidator validator_;
  PopupFade* fade_;
  PopupKeyboard* keyboard_;
  QuickPictures* pictures_;
  QPointer<QQuickItem> view_;
  QTimer emojiTimer_;
  QVariantAnimation opening_;
  QuickScrolling scrolling_;
  double openness_ = 0;
  int stopRow_ = 0;
  int namedEmoji_ = -1;
  bool copied_ = false;
  bool holdsScore_ = false;
  bool dismissing_ = false;
  bool gone_ = false;
};

}  // namespace kifo
