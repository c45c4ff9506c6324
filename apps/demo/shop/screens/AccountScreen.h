#pragma once

#include <array>

#include "apps/demo/shop/screens/ShopScreen.h"

namespace kifo::shop {

/// The visitor's own page, with what the shop would like to know.
class AccountScreen : public ShopScreen {
  Q_OBJECT

 public:
  explicit AccountScreen(QWidget* parent = nullptr);

 private:
  struct Invitation;
  static const std::array<Invitation, 4> kInvitations;

  QWidget* cardFor(const Invitation& invitation);
};

}  // namespace kifo::shop
