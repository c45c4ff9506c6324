#include "Kifo_iOS_Common_Kit/inapp/quick/QmlAlert.h"

#include <QQuickItem>
#include <algorithm>
#include <string>
#include <string_view>
#include <variant>

#include "Kifo_iOS_Common_Kit/core/Console.h"

namespace kifo {
namespace {

constexpr std::string_view LOG_TAG = "Kifo KifoAlert:";

using Member =
    std::variant<double KifoAppearance::*, bool KifoAppearance::*, QColor KifoAppearance::*>;

struct Field {
  std::string_view name;
  Member member;
};

const Field kFields[] = {
    {"kDefaultShadowOpacity", &KifoAppearance::kDefaultShadowOpacity},
    {"kCircleTopPosition", &KifoAppearance::kCircleTopPosition},
    {"kCircleBackgroundTopPosition", &KifoAppearance::kCircleBackgroundTopPosition},
    {"kCircleHeight", &KifoAppearance::kCircleHeight},
    {"kCircleIconHeight", &KifoAppearance::kCircleIconHeight},
    {"kTitleHeight", &KifoAppearance::kTitleHeight},
    {"kTitleMinimumScaleFactor", &KifoAppearance::kTitleMinimumScaleFactor},
    {"kWindowWidth", &KifoAppearance::kWindowWidth},
    {"kWindowHeight", &KifoAppearance::kWindowHeight},
    {"kTextHeight", &KifoAppearance::kTextHeight},
    {"kTextFieldHeight", &KifoAppearance::kTextFieldHeight},
    {"kTextViewdHeight", &KifoAppearance::kTextViewdHeight},
    {"kButtonHeight", &KifoAppearance::kButtonHeight},
    {"contentViewCornerRadius", &KifoAppearance::contentViewCornerRadius},
    {"fieldCornerRadius", &KifoAppearance::fieldCornerRadius},
    {"buttonCornerRadius", &KifoAppearance::buttonCornerRadius},
    {"disableTapGesture", &KifoAppearance::disableTapGesture},
    {"showCloseButton", &KifoAppearance::showCloseButton},
    {"showCircularIcon", &KifoAppearance::showCircularIcon},
    {"shouldAutoDismiss", &KifoAppearance::shouldAutoDismiss},
    {"dynamicAnimatorActive", &KifoAppearance::dynamicAnimatorActive},
    {"hideWhenBackgroundViewIsTapped", &KifoAppearance::hideWhenBackgroundViewIsTapped},
    {"circleBackgroundColor", &KifoAppearance::circleBackgroundColor},
    {"contentViewColor", &KifoAppearance::contentViewColor},
    {"contentViewBorderColor", &KifoAppearance::contentViewBorderColor},
    {"titleColor", &KifoAppearance::titleColor},
    {"subTitleColor", &KifoAppearance::subTitleColor},
};

/// Writes a value of QML into a member; false when its type is wrong.
struct Writer {
  bool operator()(double KifoAppearance::*member) const {
    bool isNumber = false;
    const double number = value.toDouble(&isNumber);
    if (isNumber) appearance.*member = number;
    return isNumber;
  }
  bool operator()(bool KifoAppearance::*member) const {
    if (value.typeId() != QMetaType::Bool) return false;
    appearance.*member = value.toBool();
    return true;
  }
  bool operator()(QColor KifoAppearance::*member) const {
    const auto color = value.value<QColor>();
    if (color.isValid()) appearance.*member = color;
    return color.isValid();
  }

  KifoAppearance& appearance;
  const QVariant& value;
};

}  // namespace

QmlAlert::QmlAlert(QObject* parent) : QObject(parent) {}

QmlAlert::~QmlAlert() {
  if (alert_ == nullptr) return;
  alert_->dismissBlock = {};
  alert_->motion.reduced = true;
  alert_->hideView();
}

KifoAppearance QmlAlert::chosenAppearance() const {
  KifoAppearance appearance = likePopups_ ? KifoAppearance::likePopups() : KifoAppearance();
  for (auto each = appearance_.begin(); each != appearance_.end(); ++each) {
    const std::string name = each.key().toStdString();
    const auto* const field = std::ranges::find(kFields, std::string_view(name), &Field::name);
    const bool isKnown = field != std::end(kFields);
    if (isKnown && std::visit(Writer{appearance, each.value()}, field->member)) continue;
    Console::print(LOG_TAG, isKnown ? "\"" + name + "\" has a wrong type"
                                    : "the appearance has no \"" + name + "\"");
  }
  return appearance;
}

void QmlAlert::fill() {
  const std::optional<ShowTimeoutConfiguration> seconds =
      showsSeconds_ ? std::optional(ShowTimeoutConfiguration{"(", " s)"}) : std::nullopt;
  for (int index = 0; index < buttons_.size(); ++index) {
    alert_->addButton(buttons_[index], {}, {}, seconds, [this, index] { Q_EMIT pressed(index); });
  }
  for (const QVariant& field : fields_) {
    const bool isLine = field.isValid() && !field.isNull();
    QuickAlertField* made = isLine ? alert_->addTextField(field.toString()) : alert_->addTextView();
    connect(made, &QuickAlertField::textChanged, this, &QmlAlert::textsChanged);
  }
  alert_->datas.clear();
  for (const QVariant& row : rows_) {
    const QVariantMap texts = row.toMap();
    alert_->datas.push_back({texts["header"].toString(), texts["value"].toString()});
  }
  alert_->headerStr = heading_;
}

void QmlAlert::show() {
  if (alert_ == nullptr) {
    alert_ = std::make_shared<QuickAlert>();
    alert_->dismissBlock = [this] {
      Q_EMIT showingChanged();
      Q_EMIT dismissed();
    };
  }
  alert_->appearance = chosenAppearance();
  alert_->motion.reduced = reducedMotion_;
  alert_->type = isNotification_ ? ScreenType::notification : ScreenType::popup;
  const auto* item = qobject_cast<QQuickItem*>(parent());
  alert_->hostWindow = item != nullptr ? item->window() : qobject_cast<QQuickWindow*>(parent());
  alert_->removeButtonsAndFields();
  fill();
  const std::optional<std::uint32_t> color =
      color_.isValid() ? std::optional<std::uint32_t>(color_.rgb() & 0xFFFFFFU) : std::nullopt;
  alert_->showTitle(
      title_, text_, static_cast<KifoPopupStyle>(style_), closeButtonTitle_,
      KifoTimeoutConfiguration{timeout_, [this] { Q_EMIT timedOut(); }, pausesWhileInside_}, color,
      {}, {}, static_cast<KifoAnimationStyle>(animation_));
  Q_EMIT showingChanged();
  Q_EMIT textsChanged();
}

void QmlAlert::hide() {
  if (alert_ == nullptr) return;
  alert_->hideView();
  Q_EMIT showingChanged();
}

bool QmlAlert::isShowing() const {
  return alert_ != nullptr && alert_->isShowing();
}

QStringList QmlAlert::texts() const {
  QStringList texts;
  if (alert_ == nullptr) return texts;
  for (const QuickAlertField* field : alert_->fields()) texts.append(field->text());
  return texts;
}

}  // namespace kifo
