// A stored row read back, and an event's parameters on their way to the wire: texts of any bytes.
#include <cstdint>
#include <cstdlib>
#include <string>

#include "Kifo_iOS_Common_Kit/core/Url.h"
#include "Kifo_iOS_Common_Kit/network/RequestTexts.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  const bool isAddress = kifo::isUrl(text);
  kifo::EventParameters parameters = {{text, text}, {"nested", kifo::Value::list({text})}};
  const kifo::RequestTexts texts(
      {isAddress ? text : "http://h/p", true},
      {std::make_shared<const kifo::EventParameters>(std::move(parameters))});
  if (!kifo::isUrl(texts.url()) || !kifo::isUtf8(texts.json())) std::abort();
  if (!kifo::parametersFromText(texts.json())) std::abort();
  kifo::parametersFromText(text);
  return 0;
}
