#include "Kifo_iOS_Common_Kit/inapp/popup/PopupAnswers.h"

#include "Kifo_iOS_Common_Kit/core/Console.h"

namespace kifo {

void pressButton(PopupState& state, PopupRequest::ButtonCallback action,
                 const PopupState::Button& button) {
  state.isAnswering = true;
  callHost(PopupState::LOG_TAG, action, PopupState::Button(button));
}

SubmitOutcome submitAnswers(const PopupRequest& request, PopupState& state) {
  state.isAnswering = true;
  const auto reporter = request.reporter;
  const auto item = state.appCommunicationItem;
  const auto all = state.answers();
  const auto controller = state.controller;
  const auto pageName = state.pageName;
  const auto callback = state.submitButtonItem;
  if (item->submitButton) callHost(PopupState::LOG_TAG, callback, item->submitButton);
  for (const InAppAnswer& answer : all) {
    if (reporter) reporter->answered(item, answer, controller.lock(), pageName);
  }
  return {!all.empty(), all.size() == 1 && all.front().openEndedField.has_value()};
}

void reportClose(const PopupRequest& request, const PopupState& state) {
  const auto item = state.appCommuncationItem;
  if (!item || !request.reporter) return;
  request.reporter->answered(item, InAppAnswer{}, state.controller.lock(), state.pageName);
}

}  // namespace kifo
