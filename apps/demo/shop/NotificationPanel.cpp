#include "apps/demo/shop/NotificationPanel.h"

#include <QHBoxLayout>
#include <QPointer>
#include <QStringList>
#include <QTimer>

#include "Kifo_iOS_Common_Kit/core/ValueJson.h"
#include "Kifo_iOS_Common_Kit/ports/HttpTransport.h"
#include "Kifo_iOS_Common_Kit/ports/Platform.h"
#include "apps/demo/shop/ShopPushes.h"
#include "apps/demo/shop/widgets/AdaptiveRow.h"
#include "apps/demo/shop/widgets/PillButton.h"
#include "apps/demo/shop/widgets/Theme.h"
#include "platform/qt/PushCarousel.h"

namespace kifo::shop {
namespace {

constexpr int kRoomForTwo = 620;
constexpr int kPermissionAge = 500;  // Milliseconds until the desktop is asked anew.
constexpr int kLargestCarousel = 520;

/// A push as a campaign's server writes it: what the desktop shows, and the campaign as a text.
std::string samplePush(const std::string& server) {
  const auto picture = [&](const char* name) { return server + "/images/" + name + ".png"; };
  const Value campaign{
      {"uuid", "5d1c7a52-push"},
      {"code", "PUSH-1"},
      {"name", "Evening post"},
      {"sliderSupport", true},
      {"action", {{"link", "shop://product/long-evenings"}}},
      {"images",
       Value::list({Value{{"url", picture("push-lamp")}}, Value{{"url", picture("push-chair")}},
                    Value{{"url", picture("push-books")}}})},
      {"buttons", Value::list({Value{{"id", "lamp"},
                                     {"text", "Show me the lamp"},
                                     {"action", Value{{"link", "shop://product/dusk-lamp"}}}},
                               Value{{"id", "basket"},
                                     {"text", "To my basket"},
                                     {"action", Value{{"link", "shop://basket"}}}}})}};
  return jsonFromValue(
      Value{{"aps",
             Value{{"alert", Value{{"title", "Three things for the evening"},
                                   {"body", "A lamp, a chair and three novels, in one parcel."}}}}},
            {"image", picture("push-lamp")},
            {"data", jsonFromValue(campaign)}});
}

QString permissionText(int status) {
  switch (status) {
    case 0:
      return NotificationPanel::tr("Asking the desktop …");
    case 1:
      return NotificationPanel::tr("No desktop shows notifications here.");
    default:
      return NotificationPanel::tr("Allowed: this desktop shows notifications.");
  }
}

QStringList buttonsOf(const NotificationContent& content) {
  QStringList texts;
  const auto campaign = campaignOf(content.userInfo);
  if (!campaign || !campaign->buttons) return texts;
  for (const auto& button : *campaign->buttons) {
    if (button->text) texts << QString::fromStdString(*button->text);
  }
  return texts;
}

QFont titleFont() {
  return theme::text(19, QFont::DemiBold);
}

}  // namespace

NotificationPanel::NotificationPanel(ShopPushes& pushes, const QString& server, QWidget* parent)
    : ShopScreen(parent),
      pushes_(pushes),
      server_(server.toStdString()),
      permission_(label({}, theme::text(15), theme::kInk)),
      answer_(label(tr("Nothing yet. Click the notification or one of its buttons."),
                    theme::text(15), theme::kMuted)),
      follow_(new PillButton(tr("Go there"), PillButton::Look::outlined)),
      title_(label(tr("Nothing has arrived yet"), titleFont(), theme::kInk)),
      text_(label(tr("What the server sends shows here, too."), theme::text(15), theme::kMuted)),
      buttons_(label({}, theme::text(15), theme::kInk)),
      carousel_(new PushCarousel) {
  column()->addWidget(headline(tr("Pushes")));
  auto* row = new AdaptiveRow(kRoomForTwo, 0);
  row->box()->addWidget(askingCard(), 1);
  row->box()->addWidget(pushCard(), 1);
  column()->addWidget(row);
  column()->addStretch();
  connect(&pushes, &ShopPushes::arrived, this, &NotificationPanel::showPush);
  connect(&pushes, &ShopPushes::clicked, this, &NotificationPanel::showClick);
  connect(follow_, &QPushButton::clicked, this, [this] { Q_EMIT linkFollowed(link_); });
  auto* timer = new QTimer(this);
  connect(timer, &QTimer::timeout, this, [this] {
    if (isVisible()) showPermission();
  });
  timer->start(kPermissionAge);
}

QWidget* NotificationPanel::askingCard() {
  auto* card = new CardFrame;
  auto* send = new PillButton(tr("Send me a push"));
  card->column()->addWidget(label(tr("By post"), titleFont(), theme::kInk));
  card->column()->addWidget(label(tr("The shop's server sends one at once: a picture, two buttons "
                                     "and three more pictures to leaf through."),
                                  theme::text(15), theme::kMuted));
  card->column()->addWidget(send);
  card->column()->addSpacing(14);
  card->column()->addWidget(label(tr("Permission"), titleFont(), theme::kInk));
  card->column()->addWidget(permission_);
  card->column()->addSpacing(14);
  card->column()->addWidget(label(tr("What came back"), titleFont(), theme::kInk));
  card->column()->addWidget(answer_);
  card->column()->addWidget(follow_);
  card->column()->addStretch();
  follow_->setVisible(false);
  connect(send, &QPushButton::clicked, this, &NotificationPanel::ask);
  return card;
}

QWidget* NotificationPanel::pushCard() {
  auto* card = new CardFrame;
  card->column()->addWidget(title_);
  card->column()->addWidget(text_);
  auto* middle = new QHBoxLayout;
  middle->addStretch(1);
  middle->addWidget(carousel_, 1000);  // All there is, up to its largest width.
  middle->addStretch(1);
  card->column()->addLayout(middle);
  card->column()->addWidget(buttons_);
  card->column()->addStretch();
  carousel_->setMaximumWidth(kLargestCarousel);
  carousel_->setVisible(false);
  buttons_->setVisible(false);
  return card;
}

void NotificationPanel::showEvent(QShowEvent* event) {
  ShopScreen::showEvent(event);
  showPermission();
}

void NotificationPanel::ask() {
  Platform::current()->http->send(
      [server = server_] {
        return HttpRequest{.method = "POST",
                           .url = server + "/push",
                           .headers = {{"Content-Type", "application/json"}},
                           .body = samplePush(server)};
      },
      [](const HttpAnswer&) {});
}

void NotificationPanel::showPermission() {
  pushes_.centre()->getNotificationSettings([page = QPointer(this)](int status) {
    if (page) page->permission_->setText(permissionText(status));
  });
}

void NotificationPanel::showPush(const Notification& push) {
  const NotificationContent& content = *push.request.content;
  const QStringList buttons = buttonsOf(content);
  title_->setText(QString::fromStdString(content.title));
  text_->setText(QString::fromStdString(content.body));
  buttons_->setText(tr("Its buttons: %1").arg(buttons.join(QStringLiteral("  ·  "))));
  buttons_->setVisible(!buttons.isEmpty());
  carousel_->setNotification(push);
  carousel_->setVisible(!carousel_->isEmpty());
  carousel_->updateGeometry();
}

void NotificationPanel::showClick(const QString& link) {
  link_ = link;
  answer_->setText(link.isEmpty() ? tr("A click that leads nowhere.")
                                  : tr("A click that leads to\n%1").arg(link));
  follow_->setVisible(!link.isEmpty());
}

}  // namespace kifo::shop
