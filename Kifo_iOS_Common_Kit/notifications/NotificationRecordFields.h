#pragma once

#include "Kifo_iOS_Common_Kit/inapp/model/RecordFields.h"
#include "Kifo_iOS_Common_Kit/notifications/NotificationAppCommunicationItem.h"

namespace kifo {

template <>
struct RecordFields<NotificationAppCommunicationItem> {
  static constexpr auto fields = std::tuple(
      field("type", &NotificationAppCommunicationItem::type),
      field("uuid", &NotificationAppCommunicationItem::uuid),
      field("code", &NotificationAppCommunicationItem::code),
      field("actorId", &NotificationAppCommunicationItem::actorId),
      field("pushToken", &NotificationAppCommunicationItem::pushToken),
      field("name", &NotificationAppCommunicationItem::name),
      field("triggeringEventName", &NotificationAppCommunicationItem::triggeringEventName),
      field("image", &NotificationAppCommunicationItem::image),
      field("buttons", &NotificationAppCommunicationItem::buttons),
      field("applicationName", &NotificationAppCommunicationItem::applicationName),
      field("scenario", &NotificationAppCommunicationItem::scenario),
      field("action", &NotificationAppCommunicationItem::action),
      field("images", &NotificationAppCommunicationItem::images),
      field("sliderSupport", &NotificationAppCommunicationItem::sliderSupport));
};

}  // namespace kifo
