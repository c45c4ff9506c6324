#include "platform/qt/QtScreenController.h"

#include <cxxabi.h>

#include <cstdlib>
#include <memory>
#include <string_view>
#include <typeinfo>
#include <utility>

namespace kifo {
namespace {

std::string demangled(const char* name) {
  const std::unique_ptr<char, decltype(&std::free)> text(
      abi::__cxa_demangle(name, nullptr, nullptr, nullptr), &std::free);
  return text ? text.get() : name;
}

/// What follows the last "::" that is not part of a template's arguments.
std::string withoutNamespaces(std::string_view name) {
  const std::size_t separator = name.substr(0, name.find('<')).rfind("::");
  return std::string(separator == name.npos ? name : name.substr(separator + 2));
}

}  // namespace

QtScreenController::QtScreenController(QWidget* widget, std::string className)
    : className_(std::move(className)), widget_(widget) {}

void QtScreenController::willShow() {
  if (isShown_) return;
  if (!std::exchange(isLoaded_, true)) viewDidLoad();
  viewWillAppear(/*animated=*/false);
}

void QtScreenController::didShow() {
  if (!std::exchange(isShown_, true)) viewDidAppear(/*animated=*/false);
}

void QtScreenController::didHide() {
  if (std::exchange(isShown_, false)) viewWillDisappear(/*animated=*/false);
}

void QtScreenController::detach() {
  didHide();
  widget_ = nullptr;
}

std::string QtScreenController::nameOf(const QWidget& widget, const char* baseName) {
  const std::string_view name = widget.metaObject()->className();
  return withoutNamespaces(name == baseName ? demangled(typeid(widget).name()) : std::string(name));
}

}  // namespace kifo
