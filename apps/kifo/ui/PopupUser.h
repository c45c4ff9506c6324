#pragma once

#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopUpWindow.h"
#include "apps/kifo/host/Stage.h"

namespace kifo::tool {

/// Does to a popup's controls what a user does.
///
/// **Threading:** UI thread only. **Errors:** throws `BadLine` when the popup has no such control,
/// or none that can be used now.
class PopupUser {
 public:
  explicit PopupUser(PopUpWindow& popup) : popup_(popup) {}

  void perform(const UserAction& action);

 private:
  void pressNamed(const char* name);
  void pressOption(const std::string& id, const PopupState::Buttons& options,
                   const QList<QWidget*>& cells);
  void touchBody();
  void type(const std::string& text);
  void slide(std::int64_t score);
  template <class Widget>
  Widget& control(const char* name);

  PopUpWindow& popup_;
};

}  // namespace kifo::tool
