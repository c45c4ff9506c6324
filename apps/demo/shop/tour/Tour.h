#pragma once

#include <QString>
#include <nlohmann/json.hpp>

#include "apps/demo/shop/tour/Ear.h"
#include "apps/demo/shop/tour/PushTourDesktop.h"
#include "apps/demo/shop/tour/Visitor.h"

namespace kifo::shop {

/// A visit of the shop without a visitor: every kind of campaign is brought up by its button and
/// answered by mouse and keyboard. Each state is kept as a picture, and what the server hears is
/// checked.
///
/// **Threading:** UI thread only.
class Tour {
 public:
  /// Pictures go to `folder`; `desktop` is where the shop's pushes are shown.
  Tour(QWidget& window, testing::LocalServer& server, PushTourDesktop& desktop,
       const QString& folder);

  /// Whether all went as it should; what did not was printed.
  bool run();

 private:
  bool frontPage();
  bool plainPopup();
  bool carousel();
  bool emoji();
  bool coupon();
  bool score();
  bool openEnded();
  bool survey();
  bool longSurvey();
  bool rightToLeft();
  bool alerts();
  bool pushes();
  bool smallWindow();

  /// Clicks `button`, waits for the popup and keeps its picture; the server must hear of its
  /// opening.
  bool open(const QString& button, const char* type, const char* code, const QString& picture);
  /// Once the popup has closed, the server must have heard this answer to the campaign `code`.
  bool answered(const char* code, nlohmann::json answer);
  /// Keeps a picture of the popup as it stands.
  bool keep(const QString& picture);

  QWidget& window_;
  Visitor visitor_;
  Ear ear_;
  PushTourDesktop& desktop_;
};

}  // namespace kifo::shop
