#pragma once

#include <optional>
#include <string>

#include "Kifo_iOS_Common_Kit/ports/Pasteboard.h"
#include "testing/Scripted.h"

namespace kifo::testing {

/// A clipboard of the test's own.
class FakePasteboard final : public Pasteboard {
 public:
  void setString(const std::string& text) override { string.set(text); }

  Scripted<std::optional<std::string>> string;  ///< The last text; none before the first.
};

}  // namespace kifo::testing
