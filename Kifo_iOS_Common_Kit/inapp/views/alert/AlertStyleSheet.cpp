#include "Kifo_iOS_Common_Kit/inapp/views/alert/AlertStyleSheet.h"

namespace kifo {
namespace {

QString css(const QFont& font) {
  const QString size = font.pixelSize() > 0 ? QStringLiteral("%1px").arg(font.pixelSize())
                                            : QStringLiteral("%1pt").arg(font.pointSizeF());
  QString family = font.family();
  family.remove(QLatin1Char('"')).remove(QLatin1Char('\\')).remove(QLatin1Char('\n'));
  return QStringLiteral("font: %1 %2 %3 \"%4\";")
      .arg(font.italic() ? QStringLiteral("italic") : QStringLiteral("normal"))
      .arg(font.weight())
      .arg(size, family);
}

QString shield() {
  return QStringLiteral(
      "kifo--AlertCard, kifo--TextLabel, kifo--AlertList, kifo--AlertDisc,"
      "kifo--AlertIconView, #kifoPopupContent, #kifoPopupScroll, #kifoPopupViewport,"
      "#kifoPopupScroll > #qt_scrollarea_vcontainer {"
      "  background: transparent; border: none; margin: 0; padding: 0; min-width: 0; min-height: 0;"
      "}"
      "kifo--KifoButton, kifo--CloseButton { margin: 0; min-width: 0; min-height: 0; }");
}

QString fields(const KifoAppearance& appearance, const AlertColors& colors) {
  return QStringLiteral(
             "#kifoPopupField { %1 color: %2; background: %3; border: 1px solid %4;"
             "  border-radius: %5px; padding: 0 6px; margin: 0; min-width: 0; min-height: 0;"
             "  selection-background-color: %6; selection-color: %7; }"
             "#kifoPopupField:focus { border: 2px solid %6; padding: 0 5px; }")
      .arg(css(appearance.kTextFont), colors.text.name(), colors.field.name(),
           colors.fieldBorder.name())
      .arg(appearance.fieldCornerRadius)
      .arg(colors.accent.name(), colors.selectedText.name());
}

}  // namespace

QString AlertStyleSheet::forCard(const KifoAppearance& appearance, const AlertColors& colors) {
  return shield() + fields(appearance, colors);
}

}  // namespace kifo
