#include "Kifo_iOS_Common_Kit/inapp/views/alert/KifoAppearance.h"

namespace kifo {

QFont KifoAppearance::systemFont(int pixels, QFont::Weight weight) {
  QFont font;
  font.setPixelSize(pixels);
  font.setWeight(weight);
  return font;
}

}  // namespace kifo
