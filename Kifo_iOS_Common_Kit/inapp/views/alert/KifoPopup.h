#pragma once

#include <QColor>
#include <QIcon>
#include <QObject>
#include <QPointer>
#include <QString>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Kifo_iOS_Common_Kit/core/ViewController.h"
#include "Kifo_iOS_Common_Kit/inapp/views/alert/AlertMotion.h"
#include "Kifo_iOS_Common_Kit/inapp/views/alert/KifoAnimationStyle.h"
#include "Kifo_iOS_Common_Kit/inapp/views/alert/KifoAppearance.h"
#include "Kifo_iOS_Common_Kit/inapp/views/alert/KifoPopupResponder.h"
#include "Kifo_iOS_Common_Kit/inapp/views/alert/KifoPopupStyle.h"
#include "Kifo_iOS_Common_Kit/inapp/views/alert/KifoTimeoutConfiguration.h"
#include "Kifo_iOS_Common_Kit/inapp/views/alert/ScreenType.h"
#include "Kifo_iOS_Common_Kit/inapp/views/alert/ShowTimeoutConfiguration.h"
#include "Kifo_iOS_Common_Kit/inapp/views/alert/TypeData.h"
#include "Kifo_iOS_Common_Kit/ports/Export.h"

class QDataStream;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QWidget;

namespace kifo {

class KifoButton;
class AlertCard;
class AlertAnimator;
class AlertOverlay;
class AlertTimeout;

/// An alert for the host's own messages: a card over the current window with a coloured circle and
/// icon, a title, a text, fields, buttons, and a closing time if wanted.
///
///     auto alert = std::make_shared<kifo::KifoPopup>();
///     alert->addButton("Pay", [] { pay(); });
///     alert->showTitle("Pay now?", "12.90 €", kifo::KifoPopupStyle::question, "Not yet");
///
/// **Buttons.** A press runs the button's action and then hides the alert, unless the appearance
/// says that it stays (`shouldAutoDismiss`); further presses while the action runs do nothing.
/// `closeButtonTitle` adds a last button that only closes, if it is not empty and `showCloseButton`
/// allows it. A cross in the corner appears when `closeIcon` is set, and whenever an alert that is
/// not a wait would have no other way out.
/// **Keyboard.** Escape closes if a close button or cross is shown or a tap on the background would
/// close; Enter presses the button that has the focus, else the first. Tab stays inside. The focus
/// goes to the first field, else the first button, and back where it was when the alert hides.
/// **Size.** The card is `kWindowWidth` wide, more if a row of buttons, a custom view or a long
/// text wants it, and scrolls where the window is too small.
/// **Time.** Animations: see `AlertMotion`; they may be interrupted at any time.
///
/// **Threading:** UI thread only, callbacks included.
/// **Ownership:** made with `std::make_shared`, it keeps itself alive while it is shown, so that
/// the host need not hold it. One that is made in another way closes when its owner destroys it.
/// Fields, buttons and the custom view belong to the alert. A window that is deleted ends the
/// alerts over it without running anything.
/// **Errors:** what a callback throws is printed and dropped.
class KIFO_EXPORT KifoPopup : public QObject,
                              public ViewController,
                              public std::enable_shared_from_this<KifoPopup> {
  Q_OBJECT
 public:
  KifoPopup();
  explicit KifoPopup(KifoAppearance appearance);
  /// Alerts are not archived: fatal.
  explicit KifoPopup(QDataStream& archive);
  ~KifoPopup() override;

  [[nodiscard]] std::string className() const override;

  // To be set before showing.
  KifoAppearance appearance;
  QPointer<QWidget> hostWindow;     ///< What to show over; null chooses the window in use.
  QColor viewColor;                 ///< The colour of circle and buttons; the show calls set it.
  QColor iconTintColor;             ///< Of the icon or image; invalid: white, or what can be seen.
  QPointer<QWidget> customSubview;  ///< Stands above the buttons. Taken over when shown.
  std::function<void()> dismissBlock;  ///< Runs when the alert has gone from the screen.
  ScreenType type = ScreenType::popup;
  std::vector<TypeData> datas;  ///< Rows of a list below the text.
  QString headerStr;            ///< Stands above these rows.
  QIcon closeIcon;              ///< The image of the corner's cross; null: a drawn one, if needed.
  AlertMotion motion;

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

  /// A show call of one style, used as the function that it stands for:
  ///
  ///     alert->showSuccess("Thank you!", "Your lamp leaves us today.", "Close");
  template <KifoPopupStyle style>
  class Show {
   public:
    explicit Show(KifoPopup& alert) : alert_(alert) {}
    KifoPopupResponder operator()(
        const QString& title, const QString& subTitle = {}, const QString& closeButtonTitle = {},
        const std::optional<KifoTimeoutConfiguration>& timeout = {},
        std::uint32_t colorStyle = defaultColorInt(style),
        std::uint32_t colorTextButton = defaultTextColorInt(style),
        const QIcon& circleIconImage = {},
        KifoAnimationStyle animationStyle = KifoAnimationStyle::topToBottom) const {
      return alert_.showTitle(title, subTitle, style, closeButtonTitle, timeout, colorStyle,
                              colorTextButton, circleIconImage, animationStyle);
    }

   private:
    KifoPopup& alert_;
  };

  // Each shows the alert, or changes the one that is shown. Colours are 24-bit RGB values;
  // `circleIconImage` takes the place of the style's icon.
  const Show<KifoPopupStyle::success> showSuccess{*this};
  const Show<KifoPopupStyle::error> showError{*this};
  const Show<KifoPopupStyle::notice> showNotice{*this};
  const Show<KifoPopupStyle::warning> showWarning{*this};
  const Show<KifoPopupStyle::info> showInfo{*this};
  const Show<KifoPopupStyle::edit> showEdit{*this};
  /// Shows a turning indicator instead of an icon.
  const Show<KifoPopupStyle::wait> showWait{*this};
  /// An alert in the host's own colour. Without an image it has no circle.
  KifoPopupResponder showCustom(
      const QString& title, const QString& subTitle, const QColor& color,
      const QString& closeButtonTitle = {},
      const std::optional<KifoTimeoutConfiguration>& timeout = {},
      std::uint32_t colorTextButton = 0xFFFFFF, const QIcon& circleIconImage = {},
      KifoAnimationStyle animationStyle = KifoAnimationStyle::topToBottom);
  /// `colorStyle`: none for the style's own.
  KifoPopupResponder showTitle(const QString& title, const QString& subTitle, KifoPopupStyle style,
                               const QString& closeButtonTitle = {},
                               const std::optional<KifoTimeoutConfiguration>& timeout = {},
                               std::optional<std::uint32_t> colorStyle = {},
                               std::optional<std::uint32_t> colorTextButton = {},
                               const QIcon& circleIconImage = {},
                               KifoAnimationStyle animationStyle = KifoAnimationStyle::topToBottom);
  KifoPopupResponder showTitle(const QString& title, const QString& subTitle,
                               const std::optional<KifoTimeoutConfiguration>& timeout,
                               const QString& completeText, KifoPopupStyle style,
                               std::optional<std::uint32_t> colorStyle = {},
                               std::optional<std::uint32_t> colorTextButton = {},
                               const QIcon& circleIconImage = {},
                               KifoAnimationStyle animationStyle = KifoAnimationStyle::topToBottom);

  void setTitle(const QString& title);
  void setSubTitle(const QString& subTitle);
  /// Whether the alert is on the screen and not on its way out.
  [[nodiscard]] bool isShowing() const { return phase_ == Phase::shown; }
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
  /// Hides the alert; without effect on one that is not shown or already hiding.
  void hideView();
  /// The time is up: runs the time-out's action, then hides. At most once for each showing.
  void hideViewTimeout();
  /// A second has passed: counts the titles of the buttons that show the time-out down.
  void updateShowTimeout();
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

 private:
  enum class Phase { idle, shown, hiding };
  /// What a show call asks for.
  struct Showing {
    QString title;
    QString subTitle;
    std::optional<KifoPopupStyle> style;  ///< None: the host's own colour.
    QColor color;
    QString closeButtonTitle;
    std::optional<KifoTimeoutConfiguration> timeout;
    std::uint32_t colorTextButton;
    QIcon circleIconImage;
    KifoAnimationStyle animationStyle;
  };

  KifoPopupResponder show(const Showing& showing);
  void dress(const Showing& showing);
  void dressCircle(const Showing& showing);
  void setCloseButton(const QString& title);
  void open(KifoAnimationStyle animationStyle);
  void startTimeout(const std::optional<KifoTimeoutConfiguration>& timeout);
  void finish();
  void windowGone();
  void end();
  KifoButton* makeButton(const QString& title, const QColor& backgroundColor,
                         const QColor& textColor,
                         const std::optional<ShowTimeoutConfiguration>& showTimeout);
  void dispatch(KifoButton* button);
  void showSecondsLeft();
  void holdTimeout();
  void pressDefault();
  void followInputMethod();
  void refresh();
  [[nodiscard]] bool needsCross() const;
  [[nodiscard]] bool mayClose() const;
  [[nodiscard]] QWidget* firstFocus() const;

  std::shared_ptr<KifoPopup> selfReference_;
  QPointer<AlertOverlay> overlay_;
  AlertCard* card_;
  AlertAnimator* animator_;
  AlertTimeout* clock_;
  std::optional<KifoTimeoutConfiguration> timeout_;
  QPointer<KifoButton> closeButton_;
  std::uint32_t colorTextButton_ = 0xFFFFFF;
  Phase phase_ = Phase::idle;
  unsigned showings_ = 0;
  unsigned answered_ = 0;  ///< The showing that a press has answered: one showing, one answer.
  bool waits_ = false;
  bool pointerInside_ = false;
  bool keyboardHasBeenShown_ = false;
};

}  // namespace kifo
