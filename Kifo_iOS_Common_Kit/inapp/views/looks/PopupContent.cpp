#include "Kifo_iOS_Common_Kit/inapp/views/looks/PopupContent.h"

#include <algorithm>

#include <QFontMetrics>
#include <QStringList>

#include "Kifo_iOS_Common_Kit/inapp/popup/FreeTextRule.h"
#include "Kifo_iOS_Common_Kit/inapp/views/looks/QtColors.h"

namespace kifo {
namespace {

constexpr double kThickestBorder = 8;
constexpr double kSmallestCoupon = 8;  // points
constexpr double kLargestCoupon = 40;
const QColor kWarning(0xC1, 0x27, 0x2D);  ///< Little is left to type.

using Alignment = WrappedText::Alignment;
using Vertical = WrappedText::Vertical;

QString q(const std::optional<std::string>& text) {
  return QString::fromStdString(text.value_or(""));
}

QString orElse(const QString& text, const QString& otherwise) {
  return text.isEmpty() ? otherwise : text;
}

double numberIn(const std::string& text, double fallback, double least, double most) {
  bool ok = false;
  const double number = q(text).trimmed().toDouble(&ok);
  return ok && number > 0 ? std::clamp(number, least, most) : fallback;
}

/// Makes the content; a class so that the steps share what all of them need.
class Builder {
 public:
  Builder(const PopupState& state, const PopupTheme& theme)
      : state_(state),
        p_(state.preferences),
        item_(state.appCommunicationItem.get()),
        theme_(theme),
        texts_(theme.options.texts) {}

  PopupContent build() {
    names();
    texts();
    if (item_ && item_->coupon) coupon(*item_->coupon);
    score();
    field();
    options();
    if (p_.submitButton) {
      c_.submit = option(*p_.submitButton);
      c_.submit.name = orElse(c_.submit.caption, texts_.submit);
    }
    return c_;
  }

 private:
  void names() {
    c_.name = orElse(q(p_.title), texts_.popup);
    QStringList lines{q(p_.detailText), q(p_.questionText)};
    lines.removeAll(QString());
    c_.details = lines.join(QLatin1Char('\n'));
    c_.groupName = orElse(q(p_.questionText ? p_.questionText : p_.title), texts_.popup);
    c_.sliderName = orElse(q(p_.questionText), texts_.score);
  }

  TextLook text(TextRole role, const std::optional<std::string>& words,
                const std::optional<Color>& color, Vertical vertical) const {
    const QColor wanted = toQColor(color).value_or(theme_.ink);
    return {.text = q(words),
            .font = theme_.font(role),
            .color = theme_.text(role, wanted),
            .vertical = vertical};
  }

  /// A text that does not fill its box stands by what it belongs to.
  void texts() {
    const bool pictured = p_.image || !p_.images.empty();
    c_.title = text(TextRole::title, p_.title, p_.titleColor,
                    pictured ? Vertical::middle : Vertical::bottom);
    c_.description = text(TextRole::description, p_.detailText, p_.detailTextColor, Vertical::top);
    c_.question = text(TextRole::question, p_.questionText, p_.questionColor, Vertical::bottom);
  }

  void coupon(const Coupon& coupon) {
    const QColor background = toQColor(colorFromHex(coupon.code.backgroundColor));
    const QColor seen = over(background, theme_.panel);
    c_.coupon.text = q(coupon.code.text);
    c_.coupon.color =
        theme_.text(TextRole::coupon, toQColor(colorFromHex(coupon.code.color)), seen);
    c_.coupon.font = theme_.font(TextRole::coupon);
    if (coupon.code.size) {
      const double size =
          numberIn(*coupon.code.size, c_.coupon.font.pixelSize(), kSmallestCoupon, kLargestCoupon);
      c_.coupon.font.setPixelSize(static_cast<int>(size * theme_.options.fontScale));
    }
    c_.couponLook.background = background;
    c_.couponLook.stroke = c_.coupon.color;
    c_.couponLook.lineWidth =
        numberIn(coupon.border.thickness, c_.couponLook.lineWidth, 1, kThickestBorder);
    const CouponCode& look = coupon.button.active;
    c_.copy = {q(look.text), orElse(q(look.text), texts_.copyCode),
               toQColor(colorFromHex(look.backgroundColor)), toQColor(colorFromHex(look.color))};
  }

  void score() {
    const QColor color = theme_.text(TextRole::score, toQColor(theme_.palette.scoreText(p_)));
    const TextLook bound{
        .text = {}, .font = theme_.font(TextRole::bound), .color = color, .isDigits = true};
    c_.score = c_.minimum = c_.maximum = bound;
    c_.score.font = theme_.font(TextRole::score);
    c_.minimum.text = QString::number(item_ ? item_->minScore.value_or(0) : 0);
    c_.maximum.text = QString::number(item_ ? item_->maxScore.value_or(0) : 0);
  }

  void field() {
    const DefaultFreeText question =
        item_ ? item_->defaultFreeText.value_or(DefaultFreeText{}) : DefaultFreeText{};
    c_.fieldLabel =
        text(TextRole::label, question.questionText, colorOf(question.textColor), Vertical::middle);
    c_.fieldLabel.alignment = Alignment::leading;
    c_.fieldName = orElse(c_.fieldLabel.text, texts_.freeText);
  }

  static OptionText option(const AppCommunicationItemButton& button) {
    return {q(button.text), q(button.text), toQColor(colorOf(button.color)),
            toQColor(colorOf(button.textColor))};
  }

  void options() {
    const auto rows = static_cast<int>(state_.options().size());
    for (int row = 0; row < rows; ++row) {
      const auto& button = state_.options()[static_cast<std::size_t>(row)];
      OptionText& text = c_.options.emplace_back(button ? option(*button) : OptionText{});
      const bool isBlank = text.caption.trimmed().isEmpty();
      if (state_.popupType == PopupType::emoji) text.caption = text.caption.trimmed();
      if (isBlank) text.name = texts_.option.arg(row + 1).arg(rows);
      if (isBlank && state_.popupType != PopupType::emoji) text.caption = text.name;
      if (state_.popupType == PopupType::emoji && !isBlank) text.name = text.caption;
    }
  }

  const PopupState& state_;
  const PopupPreferences& p_;
  const AppCommunicationItem* item_;
  const PopupTheme& theme_;
  const PopUpTexts& texts_;
  PopupContent c_;
};

}  // namespace

int TextLook::heightFor(const WrappedText& wrapped, int width) const {
  return isDigits ? QFontMetrics(wrapped.font()).capHeight() + 3 : wrapped.heightFor(width);
}

PopupContent PopupContent::of(const PopupState& state, const PopupTheme& theme) {
  return Builder(state, theme).build();
}

TextLook PopupContent::counter(const PopupTheme& theme, const std::string& text) {
  const bool nearlyFull = static_cast<int>(text.size()) >= FreeTextRule::warnsFrom;
  return {.text = QString::fromStdString(FreeTextRule::count(text)),
          .font = theme.font(TextRole::counter),
          .color = theme.text(TextRole::counter, nearlyFull ? kWarning : theme.shade(0.75)),
          .alignment = Alignment::trailing,
          .isDigits = true};
}

TextLook PopupContent::optionText(const PopupTheme& theme, const OptionLook& look,
                                  const OptionText& option) {
  const QColor surface = look.seenSurface();
  return {.text = option.caption,
          .font = theme.font(TextRole::option),
          .color = theme.text(TextRole::option, option.text.value_or(inkOn(surface)), surface),
          .alignment = Alignment::leading};
}

OptionText PopupContent::copied(const Coupon& coupon) {
  const CouponCode& look = coupon.button.inactive;
  QColor surface = toQColor(colorFromHex(look.backgroundColor));
  surface.setAlphaF(0.5f);
  const QString text = QString::fromStdString(look.text);
  return {text, text, surface, toQColor(colorFromHex(look.color))};
}

QFont PopupContent::heldScore(const PopupTheme& theme) {
  QFont font = theme.font(TextRole::score);
  font.setPixelSize(font.pixelSize() * 6 / 5);
  return font;
}

Qt::LayoutDirection directionOf(const PopupPreferences& preferences, const PopUpOptions& options,
                                Qt::LayoutDirection window) {
  if (options.layoutDirection != Qt::LayoutDirectionAuto) return options.layoutDirection;
  for (const auto& text : {preferences.title, preferences.detailText, preferences.questionText}) {
    if (text && QString::fromStdString(*text).isRightToLeft()) return Qt::RightToLeft;
  }
  return window;
}

}  // namespace kifo
