// The show calls of KifoPopup, which all come down to one.
#include "Kifo_iOS_Common_Kit/inapp/views/alert/KifoPopup.h"
#include "Kifo_iOS_Common_Kit/inapp/views/looks/QtColors.h"

namespace kifo {

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
  return show({title, subTitle, style, colorFromInt(colorStyle.value_or(defaultColorInt(style))),
               closeButtonTitle, timeout, colorTextButton.value_or(defaultTextColorInt(style)),
               circleIconImage, animationStyle});
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
