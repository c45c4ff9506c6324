#pragma once

#include <memory>
#include <utility>
#include <vector>

#include "Kifo_iOS_Common_Kit/ports/PopupPresenter.h"
#include "testing/Scripted.h"

namespace kifo::testing {

/// A presenter that shows nothing and keeps what it was given.
class FakePopupPresenter final : public PopupPresenter {
 public:
  using Requests = std::vector<std::shared_ptr<const PopupRequest>>;

  void present(std::shared_ptr<const PopupRequest> request) override {
    requests_.update([&](Requests& all) { all.push_back(std::move(request)); });
  }

  /// Everything presented so far, in order.
  [[nodiscard]] Requests requests() const { return requests_.get(); }
  /// What was presented since the last call.
  Requests take() {
    return requests_.update([](Requests& all) { return std::exchange(all, {}); });
  }

 private:
  Scripted<Requests> requests_;
};

}  // namespace kifo::testing
