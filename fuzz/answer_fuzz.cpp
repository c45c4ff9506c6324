// A server's answer: whatever the bytes, it decodes or it does not, and what decodes survives being
// written and read again.
#include <cstdint>
#include <cstdlib>

#include "Kifo_iOS_Common_Kit/inapp/PopupPreferences.h"
#include "Kifo_iOS_Common_Kit/inapp/model/AppCommunication.h"
#include "Kifo_iOS_Common_Kit/inapp/model/RecordFields.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const auto answer = kifo::decode<kifo::AppCommunication>(text);
  if (!answer) return 0;
  const auto written = kifo::encode(*answer);
  const auto again = kifo::decode<kifo::AppCommunication>(written);
  if (!again || kifo::encode(*again) != written) std::abort();
  if (!answer->model) return 0;
  for (const auto& item : *answer->model) {
    const auto color = kifo::colorFromHex(item->bgColor.value_or(""));
    if (!(color.red >= 0 && color.red <= 1 && color.alpha >= 0 && color.alpha <= 1)) std::abort();
  }
  return 0;
}
