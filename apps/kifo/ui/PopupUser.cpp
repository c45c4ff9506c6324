#include "apps/kifo/ui/PopupUser.h"

#include <QAbstractButton>
#include <QAbstractSlider>
#include <QLineEdit>
#include <algorithm>

#include "apps/kifo/host/Arguments.h"
#include "apps/kifo/ui/WidgetHand.h"

namespace kifo::tool {
namespace {

bool takesTouches(const QWidget* widget) {
  return qobject_cast<const QAbstractButton*>(widget) != nullptr ||
         qobject_cast<const QAbstractSlider*>(widget) != nullptr ||
         qobject_cast<const QLineEdit*>(widget) != nullptr;
}

/// Whether the widget, or one between it and `panel`, is a control.
bool isControl(const QWidget* widget, const QWidget* panel) {
  for (; widget != nullptr && widget != panel; widget = widget->parentWidget()) {
    if (takesTouches(widget)) return true;
  }
  return false;
}

}  // namespace

void PopupUser::perform(const UserAction& action) {
  using Kind = UserAction::Kind;
  const auto& state = popup_.state();
  switch (action.kind) {
    case Kind::close:
      return pressNamed("closeButton");
    case Kind::submit:
      return pressNamed("submitButton");
    case Kind::button:
      return pressOption(action.text, state.buttons,
                         popup_.findChildren<QWidget*>("KifoPopupCell"));
    case Kind::select:
      return pressOption(action.text, state.choices,
                         popup_.findChildren<QWidget*>("KifoSurveyCell") +
                             popup_.findChildren<QWidget*>("KifoEmojiCollectionViewCell"));
    case Kind::body:
      return touchBody();
    case Kind::type:
      return type(action.text);
    case Kind::slide:
      return slide(action.score);
  }
}

template <class Widget>
Widget& PopupUser::control(const char* name) {
  auto* found = popup_.findChild<Widget*>(name);
  if (found == nullptr || !found->isVisible()) {
    throw BadLine(std::string("the popup shows no ") + name);
  }
  if (!found->isEnabled()) throw BadLine(std::string("the popup's ") + name + " is disabled");
  return *found;
}

void PopupUser::pressNamed(const char* name) {
  WidgetHand::click(control<QAbstractButton>(name));
}

void PopupUser::pressOption(const std::string& id, const PopupState::Buttons& options,
                            const QList<QWidget*>& cells) {
  const auto option =
      std::ranges::find_if(options, [&](const auto& each) { return each && each->id == id; });
  const auto row = std::distance(options.begin(), option);
  if (option == options.end() || row >= cells.size()) {
    throw BadLine("the popup offers nothing with the id \"" + id + "\"");
  }
  auto* button = cells[row]->findChild<QAbstractButton*>();
  if (button == nullptr) throw BadLine("what the popup offers there cannot be pressed");
  WidgetHand::click(*button);
}

void PopupUser::touchBody() {
  auto& panel = control<QWidget>("popupView");
  constexpr int step = 4;
  for (int y = 0; y < panel.height(); y += step) {
    for (int x = step; x < panel.width(); x += step) {
      QWidget* at = panel.childAt(x, y);
      if (isControl(at, &panel)) continue;
      QWidget& target = at != nullptr ? *at : panel;
      return WidgetHand::click(target, target.mapFrom(&panel, QPoint(x, y)));
    }
  }
  throw BadLine("the popup's body is covered by its controls");
}

void PopupUser::type(const std::string& text) {
  WidgetHand::type(control<QLineEdit>("textField"), QString::fromStdString(text));
}

void PopupUser::slide(std::int64_t score) {
  auto& slider = control<QAbstractSlider>("slider");
  WidgetHand::slide(slider, static_cast<int>(std::clamp<std::int64_t>(score, slider.minimum(),
                                                                      slider.maximum())));
}

}  // namespace kifo::tool
