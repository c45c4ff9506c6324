// The show calls of KifoPopup, which all come down to one.
#include "Kifo_iOS_Common_Kit/inapp/views/KifoPopup.h"
#include "Kifo_iOS_Common_Kit/inapp/views/KifoPopupColors.h"

namespace kifo {

KifoPopupResponder KifoPopup::showSuccess(const QString& title, const QString& subTitle,
                                          const QString& closeButtonTitle,
                                          const std::optional<KifoTimeoutConfiguration>& timeout,
                                          std::uint32_t colorStyle, std::uint32_t colorTextButton,
                                          const QIcon& circleIconImage,
                                          KifoAnimationStyle animationStyle) {
  return showTitle(title, subTitle, KifoPopupStyle::success, closeButtonTitle, timeout, colorStyle,
                   colorTextButton, circleIconImage, animationStyle);
}
KifoPopupResponder KifoPopup::showError(const QString& title, const QString& subTitle,
                                        const QString& closeButtonTitle,
                                        const std::optional<KifoTimeoutConfiguration>& timeout,
                                        std::uint32_t colorStyle, std::uint32_t colorTextButton,
                                        const QIcon& circleIconImage,
                                        KifoAnimationStyle animationStyle) {
  return showTitle(title, subTitle, KifoPopupStyle::error, closeButtonTitle, timeout, colorStyle,
                   colorTextButton, circleIconImage, animationStyle);
}

KifoPopupResponder KifoPopup::showNotice(const QString& title, const QString& subTitle,
                                         const QString& closeButtonTitle,
                                         const std::optional<KifoTimeoutConfiguration>& timeout,
                                         std::uint32_t colorStyle, std::uint32_t colorTextButton,
                                         const QIcon& circleIconImage,
                                         KifoAnimationStyle animationStyle) {
  return showTitle(title, subTitle, KifoPopupStyle::notice, closeButtonTitle, timeout, colorStyle,
                   colorTextButton, circleIconImage, animationStyle);
}

KifoPopupResponder KifoPopup::showWarning(const QString& title, const QString& subTitle,
                                          const QString& closeButtonTitle,
                                          const std::optional<KifoTimeoutConfiguration>& timeout,
                                          std::uint32_t colorStyle, std::uint32_t colorTextButton,
                                          const QIcon& circleIconImage,
                                          KifoAnimationStyle animationStyle) {
  return showTitle(title, subTitle, KifoPopupStyle::warning, closeButtonTitle, timeout, colorStyle,
                   colorTextButton, circleIconImage, animationStyle);
}

KifoPopupResponder KifoPopup::showInfo(const QString& title, const QString& subTitle,
                                       const QString& closeButtonTitle,
                                       const std::optional<KifoTimeoutConfiguration>& timeout,
                                       std::uint32_t colorStyle, std::uint32_t colorTextButton,
                                       const QIcon& circleIconImage,
                                       KifoAnimationStyle animationStyle) {
  return showTitle(title, subTitle, KifoPopupStyle::info, closeButtonTitle, timeout, colorStyle,
                   colorTextButton, circleIconImage, animationStyle);
}

KifoPopupResponder KifoPopup::showEdit(const QString& title, const QString& subTitle,
                                       const QString& closeButtonTitle,
                                       const std::optional<KifoTimeoutConfiguration>& timeout,
                                       std::uint32_t colorStyle, std::uint32_t colorTextButton,
                                       const QIcon& circleIconImage,
                                       KifoAnimationStyle animationStyle) {
  return showTitle(title, subTitle, KifoPopupStyle::edit, closeButtonTitle, timeout, colorStyle,
                   colorTextButton, circleIconImage, animationStyle);
}

KifoPopupResponder KifoPopup::showWait(const QString& title, const QString& subTitle,
                                       const QString& closeButtonTitle,
                                       const std::optional<KifoTimeoutConfiguration>& timeout,
                                       std::uint32_t colorStyle, std::uint32_t colorTextButton,
                                       const QIcon& circleIconImage,
                                       KifoAnimationStyle animationStyle) {
  return showTitle(title, subTitle, KifoPopupStyle::wait, closeButtonTitle, timeout, colorStyle,
                   colorTextButton, circleIconImage, animationStyle);
}
KifoPopupResponder KifoPopup::showCustom(const QString& title, const QString& subTitle,
                                         const QColor& color, const QString& closeButtonTitle,
                                         const std::optional<KifoTimeoutConfiguration>& timeout,
                                         std::uint32_t colorTextButton,
                                         const QIcon& circleIconImage,
                                         KifoAnimationStyle animationStyle) {
  return show({title, subTitle, std::nullopt, color, closeButtonTitle, timeout, colorTextButton,
               circleIconImage, animationStyle});
}

KifoPopupResponder KifoPopup::showTitle(const QString& title, const QString& subTitle,
                                        KifoPopupStyle style, const QString& closeButtonTitle,
                                        const std::optional<KifoTimeoutConfiguration>& timeout,
                                        std::optional<std::uint32_t> colorStyle,
                                        std::optional<std::uint32_t> colorTextButton,
                                        const QIcon& circleIconImage,
                                        KifoAnimationStyle animationStyle) {
  const std::uint32_t text = style == KifoPopupStyle::warning ? 0x000000 : 0xFFFFFF;
  return show({title, subTitle, style, colorFromInt(colorStyle.value_or(defaultColorInt(style))),
               closeButtonTitle, timeout, colorTextButton.value_or(text), circleIconImage,
               animationStyle});
}

KifoPopupResponder KifoPopup::showTitle(const QString& title, const QString& subTitle,
                                        const std::optional<KifoTimeoutConfiguration>& timeout,
                                        const QString& completeText, KifoPopupStyle style,
                                        std::optional<std::uint32_t> colorStyle,
                                        std::optional<std::uint32_t> colorTextButton,
                                        const QIcon& circleIconImage,
                                        KifoAnimationStyle animationStyle) {
  return showTitle(title, subTitle, style, completeText, timeout, colorStyle, colorTextButton,
                   circleIconImage, animationStyle);
}

}  // namespace kifo
