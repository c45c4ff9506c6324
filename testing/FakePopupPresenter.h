#pragma once

#include <atomic>
#include <memory>
#include <utility>
#include <vector>

#include "Kifo_iOS_Common_Kit/inapp/PopupRequest.h"
#include "Kifo_iOS_Common_Kit/ports/PopupPresenter.h"
#include "testing/Scripted.h"

namespace kifo::testing {

/// A presenter that keeps what it was given. It shows each popup whose screen is there at once,
/// until `hold` makes popups wait as they do behind another one.
class FakePopupPresenter final : public PopupPresenter {
 public:
  using Requests = std::vector<std::shared_ptr<const PopupRequest>>;

  void present(std::shared_ptr<const PopupRequest> request) override {
    if (isHeld_) {
      held_.update([&](Requests& all) { all.push_back(std::move(request)); });
    } else {
      show(request);
    }
  }

  void hold() { isHeld_ = true; }
  /// The popups that are held, for a test that is the presenter itself.
  Requests takeHeld() {
    return held_.update([](Requests& all) { return std::exchange(all, {}); });
  }
  /// Popups that were held are shown, in order.
  void release() {
    isHeld_ = false;
    for (const auto& request : takeHeld()) show(request);
  }

  /// Everything shown so far, in order.
  [[nodiscard]] Requests requests() const { return requests_.get(); }
  /// What was shown since the last call.
  Requests take() {
    return requests_.update([](Requests& all) { return std::exchange(all, {}); });
  }

 private:
  void show(const std::shared_ptr<const PopupRequest>& request) {
    if (request->preferences.controller.expired()) return;
    if (request->open && !request->open()) return;
    requests_.update([&](Requests& all) { all.push_back(request); });
  }

  std::atomic<bool> isHeld_ = false;
  Scripted<Requests> held_;
  Scripted<Requests> requests_;
};

}  // namespace kifo::testing
