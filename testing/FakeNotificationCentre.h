#pragma once

#include <functional>
#include <optional>
#include <utility>
#include <vector>

#include "Kifo_iOS_Common_Kit/ports/NotificationCentre.h"
#include "testing/Scripted.h"

namespace kifo::testing {

/// A notification centre that gives the status which the test set, at once; or keeps the questions
/// while none is set, until `answer`.
class FakeNotificationCentre final : public NotificationCentre {
 public:
  using Completion = std::function<void(int)>;

  void getNotificationSettings(Completion completion) override {
    if (const auto now = status.get()) {
      completion(*now);
    } else {
      waiting_.update([&](auto& all) { all.push_back(std::move(completion)); });
    }
  }
  void setNotificationCategories(std::vector<NotificationCategory> replacing) override {
    categories.set(std::move(replacing));
  }

  /// Answers every question that waits.
  void answer(int authorizationStatus) {
    const auto waited = waiting_.update([](auto& all) { return std::exchange(all, {}); });
    for (const auto& completion : waited) completion(authorizationStatus);
  }
  /// Questions that wait.
  [[nodiscard]] std::size_t waiting() const { return waiting_.get().size(); }

  Scripted<std::optional<int>> status{2};
  Scripted<std::vector<NotificationCategory>> categories;

 private:
  Scripted<std::vector<Completion>> waiting_;
};

}  // namespace kifo::testing
