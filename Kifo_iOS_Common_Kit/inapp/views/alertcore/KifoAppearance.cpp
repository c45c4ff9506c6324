#include "Kifo_iOS_Common_Kit/inapp/views/alertcore/KifoAppearance.h"

namespace kifo {

QFont KifoAppearance::systemFont(int pixels, QFont::Weight weight) {
  QFont font;
  font.setPixelSize(pixels);
  font.setWeight(weight);
  return font;
}

KifoAppearance KifoAppearance::likePopups() {
  KifoAppearance appearance;
  appearance.kWindowWidth = 320;
  appearance.kButtonHeight = 44;
  appearance.kTextFieldHeight = 36;
  appearance.contentViewCornerRadius = 16;
  appearance.buttonCornerRadius = appearance.fieldCornerRadius = 8;
  appearance.kTitleFont = systemFont(20, QFont::DemiBold);
  appearance.kTextFont = systemFont(15);
  appearance.kButtonFont = systemFont(16, QFont::DemiBold);
  appearance.margin.bottom = 12;
  return appearance;
}

}  // namespace kifo
