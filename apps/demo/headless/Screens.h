#pragma once

#include "Kifo_iOS_Common_Kit/events/KifoViewController.h"

namespace kifo::demo {

/// The kiosk's screens, as a host derives them.
class HomeScreen final : public KifoViewController {
 public:
  [[nodiscard]] std::string className() const override { return "HomeScreen"; }
};

class CatalogueScreen final : public KifoViewController {
 public:
  [[nodiscard]] std::string className() const override { return "CatalogueScreen"; }
};

class CheckoutScreen final : public KifoViewController {
 public:
  [[nodiscard]] std::string className() const override { return "CheckoutScreen"; }
};

}  // namespace kifo::demo
