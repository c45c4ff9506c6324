#pragma once

#include <QApplication>
#include <memory>

namespace kifo::tool {

/// The program's connection to the display: the user's own, or, where there is none, one that draws
/// into memory.
///
/// **Threading:** the program's first thread.
class Display {
 public:
  /// `isVisible` false draws into memory in any case.
  explicit Display(const char* name, bool isVisible = true);

  [[nodiscard]] QApplication& application() const { return *application_; }

 private:
  int argumentCount_ = 1;
  char* arguments_[2];
  std::unique_ptr<QApplication> application_;
};

}  // namespace kifo::tool
