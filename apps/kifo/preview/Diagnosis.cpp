#include "apps/kifo/preview/Diagnosis.h"

namespace kifo::tool {
namespace {

constexpr std::size_t kLongest = 60;

}  // namespace

std::string mustBe(const std::string& path, const char* wanted, const nlohmann::json& found) {
  std::string text = found.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
  if (text.size() > kLongest) {
    text = std::string("a") + (found.is_object() ? "n " : " ") + found.type_name();
  }
  return (path.empty() ? "the answer" : path) + " must be " + wanted + ", not " + text;
}

}  // namespace kifo::tool
