#pragma once

#include <optional>
#include <string>

#include "apps/kifo/Toolkit.h"

namespace kifo::tool {

enum class Theme { light, dark };
enum class Direction { automatic, leftToRight, rightToLeft };

/// The window that a campaign is shown over. Lengths are logical pixels.
struct Look {
  int width = 390;
  int height = 844;
  double scale = 1.0;     ///< Physical pixels in a logical one.
  double fontSize = 1.0;  ///< 1 to 2 times the usual size.
  Theme theme = Theme::light;
  Direction direction = Direction::automatic;
};

struct PreviewOptions {
  std::string file;
  std::string out;          ///< Empty: a window.
  std::string gallery;      ///< Not empty: the folder that a gallery goes to.
  std::string pictures;     ///< A folder to look for pictures in, besides those beside the file.
  std::optional<int> item;  ///< 1 for a file's first campaign; all without it.
  Toolkit toolkit = Toolkit::widgets;
  bool hasSize = false;  ///< The look's width or height was asked for.
  Look look;
};

/// Carries out `kifo preview` and returns its exit status.
int runPreview(const PreviewOptions& options);

}  // namespace kifo::tool
