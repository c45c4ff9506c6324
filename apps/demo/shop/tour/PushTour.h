#pragma once

namespace kifo::shop {

class Ear;
class PushTourDesktop;
class Visitor;

/// The part of the tour that visits the pushes: has one sent, clicks its first button on the
/// tour's own desktop, and leafs through its pictures.
///
/// **Threading:** UI thread only.
class PushTour {
 public:
  PushTour(Visitor& visitor, Ear& ear, PushTourDesktop& desktop)
      : visitor_(visitor), ear_(ear), desktop_(desktop) {}

  /// Whether all went as it should; what did not was printed. Without a bus nothing is done.
  bool run();

 private:
  bool push();
  bool click();
  bool carousel();

  Visitor& visitor_;
  Ear& ear_;
  PushTourDesktop& desktop_;
};

}  // namespace kifo::shop
