#pragma once

#include <QByteArray>
#include <QColor>
#include <QIcon>
#include <QObject>
#include <QString>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Kifo_iOS_Common_Kit/core/ViewController.h"
#include "Kifo_iOS_Common_Kit/inapp/views/alertcore/AlertMotion.h"
#include "Kifo_iOS_Common_Kit/inapp/views/alertcore/KifoAnimationStyle.h"
#include "Kifo_iOS_Common_Kit/inapp/views/alertcore/KifoAppearance.h"
#include "Kifo_iOS_Common_Kit/inapp/views/alertcore/KifoPopupResponder.h"
#include "Kifo_iOS_Common_Kit/inapp/views/alertcore/KifoPopupStyle.h"
#include "Kifo_iOS_Common_Kit/inapp/views/alertcore/KifoTimeoutConfiguration.h"
#include "Kifo_iOS_Common_Kit/inapp/views/alertcore/ScreenType.h"
#include "Kifo_iOS_Common_Kit/inapp/views/alertcore/ShowTimeoutConfiguration.h"
#include "Kifo_iOS_Common_Kit/inapp/views/alertcore/TypeData.h"
#include "Kifo_iOS_Common_Kit/ports/Export.h"

namespace kifo {

class AlertAnimator;
class AlertTimeout;
struct AlertButton;
struct AlertIcon;

/// What an alert is in either toolkit: `KifoPopup` shows it over Qt Widgets, `QuickAlert` in a Qt
/// Quick scene.
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
class KIFO_EXPORT KifoAlert : public QObject,
                              public ViewController,
                              public std::enable_shared_from_this<KifoAlert> {
  Q_OBJECT
 public:
  ~KifoAlert() override;

  // To be set before showing.
  KifoAppearance appearance;
  QColor viewColor;                    ///< The colour of circle and buttons; the show calls set it.
  QColor iconTintColor;                ///< Of the icon or image; invalid: white, or what is seen.
  std::function<void()> dismissBlock;  ///< Runs when the alert has gone from the screen.
  ScreenType type = ScreenType::popup;
  std::vector<TypeData> datas;  ///< Rows of a list below the text.
  QString headerStr;            ///< Stands above these rows.
  QIcon closeIcon;              ///< The image of the corner's cross; null: a drawn one, if needed.
  AlertMotion motion;

  /// A show call of one style, used as the function that it stands for:
  ///
  ///     alert->showSuccess("Thank you!", "Your lamp leaves us today.", "Close");
  template <KifoPopupStyle style>
  class Show {
   public:
    explicit Show(KifoAlert& alert) : alert_(alert) {}
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
    KifoAlert& alert_;
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
  /// Whether the alert is on the screen and not closing.
  [[nodiscard]] bool isShowing() const { return phase_ == Phase::shown; }

 public Q_SLOTS:
  /// Hides the alert; without effect on one that is not shown or already hiding.
  void hideView();
  /// The time is up: runs the time-out's action, then hides. At most once for each showing.
  void hideViewTimeout();
  /// A second has passed: counts the titles of the buttons that show the time-out down.
  void updateShowTimeout();

 protected:
  KifoAlert();
  explicit KifoAlert(KifoAppearance appearance);

  // What a toolkit does.
  /// The buttons in their order, those that the host deleted left out.
  [[nodiscard]] virtual std::vector<AlertButton*> buttonsInOrder() const = 0;
  /// Makes a button below the others, but above the one that only closes.
  virtual AlertButton& makeButton(const QString& title) = 0;
  virtual void removeButton(AlertButton& button) = 0;
  /// The texts have changed.
  virtual void showTexts() = 0;
  /// Colours, fonts, buttons, list or circle have changed.
  virtual void refresh() = 0;
  /// Opens the cover over the window, with the card on it. False: there is no window for it.
  virtual bool open() = 0;
  virtual void returnFocus() = 0;
  /// Takes the cover away.
  virtual void close() = 0;
  /// Whether desktop and toolkit allow animations.
  [[nodiscard]] virtual bool mayMove() const;

  // What a toolkit tells and asks.
  /// A closure, or with `target` a slot of it.
  struct ButtonAction {
    std::function<void()> closure;
    QObject* target = nullptr;
    QByteArray selector;
  };
  /// Makes a button that does what `action` says. An invalid colour stands for the alert's own.
  AlertButton& addButtonWith(const ButtonAction& action, const QString& title,
                             const QColor& background, const QColor& text,
                             const std::optional<ShowTimeoutConfiguration>& showTimeout);
  void press(AlertButton& button);
  /// The user is inside: the pointer is on the card, or the keyboard is used.
  void holdTimeout(bool isInside);
  void tappedBackground();
  /// The window took the alert with it.
  void windowGone();
  [[nodiscard]] const QString& title() const { return title_; }
  [[nodiscard]] const QString& subTitle() const { return subTitle_; }
  [[nodiscard]] bool isOpen() const { return phase_ != Phase::idle; }
  [[nodiscard]] bool hasCross() const;
  [[nodiscard]] bool mayClose() const;
  [[nodiscard]] AlertIcon icon() const;
  [[nodiscard]] QColor buttonTextColor() const;
  [[nodiscard]] AlertAnimator& animator() const { return *animator_; }

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
    std::uint32_t colorTextButton = 0xFFFFFF;
    QIcon circleIconImage;
    KifoAnimationStyle animationStyle = KifoAnimationStyle::topToBottom;
  };

  KifoPopupResponder show(const Showing& showing);
  void dress(const Showing& showing);
  void setCloseButton(const QString& title);
  void startTimeout();
  void showSecondsLeft();
  void finish();
  void end();
  [[nodiscard]] AlertMotion allowedMotion() const;

  AlertAnimator* const animator_;
  AlertTimeout* const clock_;
  std::shared_ptr<KifoAlert> selfReference_;
  QString title_;
  QString subTitle_;
  std::optional<KifoPopupStyle> style_;
  QIcon image_;
  std::uint32_t colorTextButton_ = 0xFFFFFF;
  std::optional<KifoTimeoutConfiguration> timeout_;
  Phase phase_ = Phase::idle;
  unsigned showings_ = 0;
  unsigned answered_ = 0;  ///< The showing that a press has answered: one showing, one answer.
};

}  // namespace kifo
