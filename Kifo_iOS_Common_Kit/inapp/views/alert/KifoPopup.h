#pragma once

#include <QPointer>
#include <QRect>
#include <QString>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "Kifo_iOS_Common_Kit/inapp/views/alertcore/KifoAlert.h"

class QDataStream;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QWidget;

namespace kifo {

class KifoButton;
class AlertCard;
class AlertOverlay;

/// An alert for the host's own messages: a card over the current window with a coloured circle and
/// icon, a title, a text, fields, buttons, and a closing time if wanted. `KifoAlert` says how it
/// behaves; the show calls are there.
///
///     auto alert = std::make_shared<kifo::KifoPopup>();
///     alert->addButton("Pay", [] { pay(); });
///     alert->showTitle("Pay now?", "12.90 €", kifo::KifoPopupStyle::question, "Not yet");
///
/// **Threading, Ownership, Errors:** those of `KifoAlert`.
class KIFO_EXPORT KifoPopup : public KifoAlert {
  Q_OBJECT
 public:
  KifoPopup();
  explicit KifoPopup(KifoAppearance appearance);
  /// Alerts are not archived: fatal.
  explicit KifoPopup(QDataStream& archive);
  ~KifoPopup() override;

  [[nodiscard]] std::string className() const override;

  // To be set before showing.
  QPointer<QWidget> hostWindow;     ///< What to show over; null chooses the window in use.
  QPointer<QWidget> customSubview;  ///< Stands above the buttons. Taken over when shown.

  // Each adds below what was added before. An invalid colour stands for the alert's own.
  KifoButton* addButton(const QString& title, const QColor& backgroundColor,
                        const QColor& textColor,
                        const std::optional<ShowTimeoutConfiguration>& showTimeout,
                        std::function<void()> action);
  KifoButton* addButton(const QString& title, std::function<void()> action);
  /// `selector`: a slot or invokable of `target` without arguments, with or without its
  /// parentheses. One that does not exist is a console line; a target that is gone is
  /// skipped.
  KifoButton* addButton(const QString& title, const QColor& backgroundColor,
                        const QColor& textColor,
                        const std::optional<ShowTimeoutConfiguration>& showTimeout, QObject* target,
                        const QByteArray& selector);
  /// `title` is the field's placeholder and its accessible name.
  QLineEdit* addTextField(const QString& title = {});
  QPlainTextEdit* addTextView();

  [[nodiscard]] bool keyboardHasBeenShown() const { return keyboardHasBeenShown_; }

  // The card and its parts. They live as long as the alert.
  [[nodiscard]] QWidget* baseView() const;
  [[nodiscard]] QWidget* contentView() const;
  [[nodiscard]] QLabel* labelTitle() const;
  [[nodiscard]] QLabel* viewText() const;
  [[nodiscard]] QWidget* circleBG() const;
  [[nodiscard]] QWidget* circleView() const;
  [[nodiscard]] QWidget* circleIconView() const;
  [[nodiscard]] const std::vector<QLineEdit*>& inputs() const;
  [[nodiscard]] const std::vector<QPlainTextEdit*>& input() const;
  [[nodiscard]] const std::vector<KifoButton*>& buttons() const;

 public Q_SLOTS:
  void buttonTapped(kifo::KifoButton* button);
  void buttonTapDown(kifo::KifoButton* button);
  void buttonRelease(kifo::KifoButton* button);
  /// A tap beside the buttons and fields: puts a keyboard on the screen away and, if it was beside
  /// the card too and `hideWhenBackgroundViewIsTapped` says so, hides the alert.
  void tapped(bool besideCard = true);
  /// A keyboard covers `keyboard` of the window: an alert with fields moves out of its way. The
  /// input method's own keyboard is watched; hosts that draw one themselves call this.
  void keyboardWillShow(const QRect& keyboard);
  void keyboardWillHide();

 protected:
  [[nodiscard]] std::vector<AlertButton*> buttonsInOrder() const override;
  AlertButton& makeButton(const QString& title) override;
  void removeButton(AlertButton& button) override;
  void showTexts() override;
  void refresh() override;
  bool open() override;
  void returnFocus() override;
  void close() override;
  [[nodiscard]] bool mayMove() const override;

 private:
  void engagementChanged();
  void pressDefault();
  void followInputMethod();
  [[nodiscard]] QWidget* firstFocus() const;

  AlertCard* card_ = nullptr;
  QPointer<AlertOverlay> overlay_;
  bool pointerInside_ = false;
  bool keyboardHasBeenShown_ = false;
};

}  // namespace kifo
