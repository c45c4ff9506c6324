#include "apps/kifo/host/PopupLine.h"

namespace kifo::tool {
namespace {

Output::Line textOf(const std::optional<std::string>& text) {
  return text ? Output::Line(*text) : Output::Line();
}

Output::Line optionsOf(const PopupLine::Options& options) {
  auto all = Output::Line::array();
  for (const auto& option : options) {
    if (option) all.push_back({{"id", textOf(option->id)}, {"text", textOf(option->text)}});
  }
  return all;
}

}  // namespace

Output::Line PopupLine::line(const char* what) const {
  const AppCommunicationItem none;
  const AppCommunicationItem& shown = item ? *item : none;
  return {{"popup", what},
          {"type", textOf(shown.type)},
          {"uuid", textOf(shown.uuid)},
          {"title", shown.header ? textOf(shown.header->text) : Output::Line()},
          {"buttons", optionsOf(buttons)},
          {"choices", optionsOf(choices)}};
}

}  // namespace kifo::tool
