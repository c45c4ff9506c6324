#pragma once

#include <string>
#include <utility>
#include <vector>

#include "Kifo_iOS_Common_Kit/ports/WatchService.h"
#include "testing/Scripted.h"

namespace kifo::testing {

/// A service whose only tool is the test.
class FakeWatchService final : public WatchService {
 public:
  std::string open(Source source) override {
    source_.set(std::move(source));
    isOpen_.set(problem_.get().empty());
    return problem_.get();
  }
  void publish(std::string line) override {
    lines_.update([&](std::vector<std::string>& all) { all.push_back(std::move(line)); });
  }
  void close() override {
    if (isOpen_.update([](bool& is) { return std::exchange(is, false); })) source().followed(false);
  }

  [[nodiscard]] bool isOpen() const { return isOpen_.get(); }
  /// What the SDK tells; only while open.
  [[nodiscard]] Source source() const { return source_.get(); }
  /// What was published since the last call.
  std::vector<std::string> take() {
    return lines_.update([](std::vector<std::string>& all) { return std::exchange(all, {}); });
  }
  /// From now on opening fails for this reason.
  void refuse(std::string problem) { problem_.set(std::move(problem)); }

 private:
  Scripted<Source> source_;
  Scripted<bool> isOpen_;
  Scripted<std::string> problem_;
  Scripted<std::vector<std::string>> lines_;
};

}  // namespace kifo::testing
