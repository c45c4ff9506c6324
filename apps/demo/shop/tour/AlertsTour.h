#pragma once

#include <QString>

namespace kifo::shop {

class Visitor;

/// The part of the tour that visits the alerts: brings each up by its tile, keeps its picture, and
/// answers it by mouse or keyboard.
///
/// **Threading:** UI thread only.
class AlertsTour {
 public:
  explicit AlertsTour(Visitor& visitor) : visitor_(visitor) {}

  /// Whether all went as it should; what did not was printed.
  bool run();

 private:
  bool styles();
  bool fields();
  bool countdown();
  bool wait();
  bool contents();
  bool twoAtOnce();
  bool darkPage();

  /// Clicks the tile and keeps a picture of its alert.
  bool open(const QString& tile, const QString& picture);
  /// Opens, keeps and closes by the button `answer`.
  bool visit(const QString& tile, const QString& picture, const QString& answer);

  Visitor& visitor_;
};

}  // namespace kifo::shop
