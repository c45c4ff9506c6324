#pragma once

#include <memory>
#include <optional>
#include <string>

#include "Kifo_iOS_Common_Kit/core/ViewController.h"
#include "Kifo_iOS_Common_Kit/inapp/model/AnswerModels.h"
#include "Kifo_iOS_Common_Kit/inapp/model/AppCommunicationItem.h"
#include "Kifo_iOS_Common_Kit/ports/Export.h"

namespace kifo {

/// What a user answered. At most one of the members is set, but for `choice`, which goes with
/// `choiseField`; none at all is a close without an answer.
struct InAppAnswer {
  std::shared_ptr<AppCommunicationItemAction> body = nullptr;
  std::shared_ptr<AppCommunicationItemButton> choice = nullptr;
  std::shared_ptr<AppCommunicationItemButton> button = nullptr;
  std::optional<ScoreFieldModel> scoreField = std::nullopt;
  std::optional<OpenEndedFieldModel> openEndedField = std::nullopt;
  std::optional<ChoiseFieldModel> choiseField = std::nullopt;
};

/// Where the popup side reports what happened to a campaign; the event manager turns it into
/// events.
///
/// **Threading:** thread-safe; returns at once.
class KIFO_EXPORT InAppReporter {
 public:
  virtual ~InAppReporter() = default;

  virtual void opened(std::shared_ptr<AppCommunicationItem> item,
                      std::shared_ptr<ViewController> controller,
                      std::optional<std::string> pageName) = 0;
  virtual void answered(std::shared_ptr<AppCommunicationItem> item, InAppAnswer answer,
                        std::shared_ptr<ViewController> controller,
                        std::optional<std::string> pageName) = 0;
};

}  // namespace kifo
