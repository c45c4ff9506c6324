#pragma once

#include <memory>
#include <vector>

#include "Kifo_iOS_Common_Kit/inapp/InAppReporter.h"

namespace kifo {

class PopUpWindowView;
struct PopupState;

/// What the user of a popup has chosen, and what submitting makes of it. A choice is replaced by
/// the next; there is no way back to none.
///
/// **Threading:** UI thread only. **Ownership:** its window owns it, the fields and the view.
class PopUpWindowAnswer {
 public:
  using Button = std::shared_ptr<AppCommunicationItemButton>;

  PopUpWindowAnswer(PopupState& fields, PopUpWindowView& view);

  void selectSurvey(const Button& button);
  void selectEmoji(const Button& button);

  /// What submitting sends, in order: the choice, if there is one, and then whatever the item's own
  /// type asks for. Needs an item.
  [[nodiscard]] std::vector<InAppAnswer> answers() const;

 private:
  void select(const Button& button);
  void applyFreeTextRule(const Button& button);
  [[nodiscard]] ScoreFieldModel score() const;

  PopupState& fields_;
  PopUpWindowView& view_;
};

}  // namespace kifo
