#include "platform/qt/desktop/DesktopNotificationLedger.h"

#include <algorithm>
#include <utility>

namespace kifo {
namespace {

constexpr std::size_t REMEMBERED = 64;
constexpr std::uint32_t DISMISSED_BY_USER = 2;

std::optional<std::string> actionOf(const DesktopNotification& notification,
                                    const std::string& key) {
  if (key == DesktopNotificationLedger::DEFAULT_KEY) {
    return NotificationResponse::defaultActionIdentifier;
  }
  for (std::size_t index = 0; index < notification.actions.size(); ++index) {
    if (key == DesktopNotificationLedger::keyOf(index)) {
      return notification.actions[index].identifier;
    }
  }
  return std::nullopt;
}

std::shared_ptr<const NotificationContent> withoutAttachments(const NotificationContent& content) {
  auto copy = std::make_shared<NotificationContent>(content);
  copy->attachments.clear();
  return copy;
}

}  // namespace

void DesktopNotificationLedger::shown(Id id, DesktopNotification notification) {
  if (const auto earlier = idOf(notification.identifier); earlier && *earlier != id) {
    retire(*earlier, *entries_[*earlier]);
  }
  std::erase(retired_, id);
  auto entry = std::make_shared<Entry>();
  entry->notification = std::move(notification);
  entries_[id] = std::move(entry);
}

std::optional<DesktopNotificationLedger::Id> DesktopNotificationLedger::idOf(
    const std::string& identifier) const {
  const auto found = std::ranges::find_if(entries_, [&](const auto& entry) {
    return entry.second->open && entry.second->notification.identifier == identifier;
  });
  return found == entries_.end() ? std::nullopt : std::optional(found->first);
}

void DesktopNotificationLedger::activationToken(Id id, std::string token) {
  if (const auto found = entries_.find(id); found != entries_.end()) {
    found->second->activationToken = std::move(token);
  }
}

std::optional<DesktopNotificationLedger::Click> DesktopNotificationLedger::actionInvoked(
    Id id, const std::string& key) {
  const auto found = entries_.find(id);
  if (found == entries_.end() || found->second->clicked) return std::nullopt;
  const auto entry = found->second;
  auto action = actionOf(entry->notification, key);
  if (!action) return std::nullopt;
  entry->clicked = true;
  retire(id, *entry);
  return Click{entry->notification.content, std::move(*action), entry->activationToken};
}

std::shared_ptr<DesktopNotificationLedger::Entry> DesktopNotificationLedger::closed(
    Id id, std::uint32_t reason) {
  const auto found = entries_.find(id);
  if (found == entries_.end()) return nullptr;
  const auto entry = found->second;
  retire(id, *entry);
  if (reason != DISMISSED_BY_USER || entry->clicked || entry->dismissed) return nullptr;
  entry->dismissed = true;
  return entry;
}

std::shared_ptr<const NotificationContent> DesktopNotificationLedger::settle(const Entry& entry) {
  return entry.clicked ? nullptr : entry.notification.content;
}

std::vector<DesktopNotification> DesktopNotificationLedger::takeOpen() {
  std::vector<DesktopNotification> open;
  for (auto& [id, entry] : entries_) {
    if (entry->open) open.push_back(std::move(entry->notification));
  }
  entries_.clear();
  retired_.clear();
  return open;
}

void DesktopNotificationLedger::retire(Id id, Entry& entry) {
  if (!entry.open) return;
  entry.open = false;
  entry.notification.content = withoutAttachments(*entry.notification.content);
  retired_.push_back(id);
  if (retired_.size() <= REMEMBERED) return;
  entries_.erase(retired_.front());
  retired_.pop_front();
}

}  // namespace kifo
