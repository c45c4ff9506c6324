#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopUpWindowAnswer.h"

#include <cmath>

#include "Kifo_iOS_Common_Kit/core/Console.h"
#include "Kifo_iOS_Common_Kit/inapp/PopupType.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/KifoEmojiCollectionViewCell.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/KifoSurveyCell.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopUpWindowView.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopupEmojiRow.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopupListView.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopupState.h"

namespace kifo {

PopUpWindowAnswer::PopUpWindowAnswer(PopupState& fields, PopUpWindowView& view)
    : fields_(fields), view_(view) {}

void PopUpWindowAnswer::selectSurvey(const Button& button) {
  const auto row = fields_.rowOf(*button);
  const auto* list = view_.elements().buttonsTableview;
  for (auto* cell : list->findChildren<KifoSurveyCell*>()) {
    cell->setChosen(cell->indexPath() == row);
  }
  select(button);
}

void PopUpWindowAnswer::selectEmoji(const Button& button) {
  fields_.currentSelected = fields_.rowOf(*button);
  for (auto* cell : view_.elements().emojiCollectionView->cells()) {
    cell->setChosen(cell->indexPath() == fields_.currentSelected);
  }
  select(button);
}

void PopUpWindowAnswer::select(const Button& button) {
  fields_.selectActionItem = button;
  view_.enableSubmitButton();
  applyFreeTextRule(button);
}

void PopUpWindowAnswer::applyFreeTextRule(const Button& button) {
  if (fields_.defaultFreeTextCheckBox.value_or(true)) return;
  if (button->freeTextQuestionCheckBox.value_or(false)) {
    view_.showFreeTextField();
  } else {
    view_.hideFreeTextField();
  }
}

std::vector<InAppAnswer> PopUpWindowAnswer::answers() const {
  std::vector<InAppAnswer> all;
  if (const Button& chosen = fields_.selectActionItem) {
    auto& answer = all.emplace_back();
    answer.choice = chosen;
    answer.choiseField =
        ChoiseFieldModel{chosen->id.value_or(""), chosen->text.value_or(""), view_.freeText()};
  }
  const auto& type = fields_.appCommunicationItem->type;
  if (type == rawValue(PopupType::score)) {
    all.emplace_back().scoreField = score();
  } else if (type == rawValue(PopupType::openEnded)) {
    all.emplace_back().openEndedField = OpenEndedFieldModel{view_.freeText()};
  }
  return all;
}

ScoreFieldModel PopUpWindowAnswer::score() const {
  const float score = view_.sliderValue();
  if (!std::isfinite(score) || std::abs(score) >= 0x1p63f) {
    fatalError("the slider's value is no integer");
  }
  return {static_cast<std::int64_t>(score), view_.freeText()};
}

}  // namespace kifo
