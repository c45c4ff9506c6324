#pragma once

#include <algorithm>
#include <iterator>
#include <string_view>
#include <utility>
#include <vector>

#include "Kifo_iOS_Common_Kit/ports/Inspector.h"
#include "testing/Scripted.h"

namespace kifo::testing {

/// An inspector that keeps every decision.
class RecordingInspector final : public Inspector {
 public:
  using Decisions = std::vector<Decision>;

  void decided(const Decision& decision) override {
    decisions_.update([&](Decisions& all) { all.push_back(decision); });
  }

  [[nodiscard]] Decisions decisions() const { return decisions_.get(); }
  [[nodiscard]] Decisions ofKind(std::string_view kind) const {
    const Decisions all = decisions();
    Decisions chosen;
    std::ranges::copy_if(all, std::back_inserter(chosen),
                         [kind](const Decision& each) { return each.kind == kind; });
    return chosen;
  }
  void clear() { decisions_.set({}); }

 private:
  Scripted<Decisions> decisions_;
};

}  // namespace kifo::testing
