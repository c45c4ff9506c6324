#pragma once

#include <memory>
#include <string>

#include "Kifo_iOS_Common_Kit/ports/SerialQueue.h"
#include "Kifo_iOS_Common_Kit/ports/UserDefaults.h"

namespace kifo {

/// User defaults in one small file of the documents directory (see `DefaultsFile`), read once when
/// the first value is asked for, and from then on kept in memory.
///
/// Values that are set are written by a task on `queue`, however many were set meanwhile in one go.
/// A write first takes over what another process has written, and replaces only the values that
/// were set in this one.
///
/// **Threading:** thread-safe. The first call reads the file on its caller's thread, a few dozen
/// microseconds; none writes there.
/// **Errors:** a file that cannot be understood is set aside as "defaults.json.bad" and counts as
/// empty. A failed write is said once, and tried again when the next value is set. Numbers that are
/// not finite, and keys that are no UTF-8, are not kept beyond the process.
class FileUserDefaults final : public UserDefaults {
 public:
  FileUserDefaults(std::string directory, std::shared_ptr<SerialQueue> queue);
  ~FileUserDefaults() override;

  [[nodiscard]] std::optional<DefaultsValue> value(const std::string& key) const override;
  void setValue(const std::string& key, DefaultsValue value) override;

 private:
  class Store;
  const std::shared_ptr<Store> store_;
};

}  // namespace kifo
