#include "apps/kifo/host/Output.h"

#include <unistd.h>

#include <cerrno>
#include <cstdlib>

namespace kifo::tool {

void Output::line(const Line& line) {
  const std::string text = line.dump(-1, ' ', false, Line::error_handler_t::replace) + "\n";
  const std::lock_guard lock(mutex_);
  std::size_t done = 0;
  while (done < text.size()) {
    const ssize_t count = ::write(descriptor_, text.data() + done, text.size() - done);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) _exit(EXIT_FAILURE);
    done += static_cast<std::size_t>(count);
  }
}

void Output::error(const std::string& text) {
  line({{"error", text}});
  const std::lock_guard lock(mutex_);
  hadErrors_ = true;
}

bool Output::hadErrors() const {
  const std::lock_guard lock(mutex_);
  return hadErrors_;
}

void Output::decided(const Decision& decision) {
  Line particulars = {{"kind", decision.kind}};
  for (const auto& [key, value] : decision.particulars) particulars[key] = value;
  line({{"decision", particulars}});
}

}  // namespace kifo::tool
