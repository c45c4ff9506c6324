#include "apps/demo/shop/screens/AccountScreen.h"

#include "apps/demo/shop/widgets/AdaptiveRow.h"
#include "apps/demo/shop/widgets/PillButton.h"
#include "apps/demo/shop/widgets/Theme.h"

namespace kifo::shop {

struct AccountScreen::Invitation {
  const char* title;
  const char* text;
  const char* button;
  const char* eventName;
  bool isRightToLeft = false;
};

const std::array<AccountScreen::Invitation, 4> AccountScreen::kInvitations{
    Invitation{"One question", "What should we do better? Two lines are plenty.", "Write to us",
               "feedback_wanted"},
    Invitation{"How did you find us?", "Four answers, one click.", "Answer", "survey_wanted"},
    Invitation{"Your taste", "Twenty styles. Which one feels like home?", "Choose a style",
               "taste_wanted"},
    Invitation{"بالعربية", "المتجر نفسه، من اليمين إلى اليسار.", "افتح", "arabic_wanted", true},
};

AccountScreen::AccountScreen(QWidget* parent) : ShopScreen(parent) {
  column()->addWidget(headline(tr("Good evening, Ada")));
  AdaptiveRow* row = nullptr;
  for (std::size_t index = 0; index < kInvitations.size(); ++index) {
    if (index % 2 == 0) {
      row = new AdaptiveRow(520, 0);
      column()->addWidget(row);
    }
    row->box()->addWidget(cardFor(kInvitations[index]), 1);
  }
  column()->addStretch();
}

QWidget* AccountScreen::cardFor(const Invitation& invitation) {
  auto* card = new CardFrame;
  if (invitation.isRightToLeft) card->setLayoutDirection(Qt::RightToLeft);
  card->column()->addWidget(
      label(tr(invitation.title), theme::text(19, QFont::DemiBold), theme::kInk));
  card->column()->addWidget(label(tr(invitation.text), theme::text(15), theme::kMuted));
  card->column()->addStretch();
  auto* button = new PillButton(tr(invitation.button), PillButton::Look::outlined);
  card->column()->addWidget(button);
  connect(button, &QPushButton::clicked, this, [this, name = invitation.eventName] { send(name); });
  return card;
}

}  // namespace kifo::shop
