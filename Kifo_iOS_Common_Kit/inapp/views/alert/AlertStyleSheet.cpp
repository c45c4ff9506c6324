#include "Kifo_iOS_Common_Kit/inapp/views/alert/AlertStyleSheet.h"

#include "Kifo_iOS_Common_Kit/inapp/views/alert/KifoPopupColors.h"
#include "Kifo_iOS_Common_Kit/inapp/views/shared/PopupColors.h"

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
      "kifo--AlertCard, kifo--KifoPopupLabel, kifo--AlertList, kifo--AlertDisc,"
      "kifo--AlertIconView, #kifoPopupContent, #kifoPopupScroll, #kifoPopupViewport,"
      "#kifoPopupScroll > #qt_scrollarea_vcontainer {"
      "  background: transparent; border: none; margin: 0; padding: 0; min-width: 0; min-height: 0;"
      "}"
      "kifo--KifoButton, kifo--KifoPopupCloseButton { margin: 0; min-width: 0; min-height: 0; }");
}

QString fields(const KifoAppearance& appearance, const QColor& accent) {
  const QColor card = appearance.contentViewColor;
  const QColor ink = readableOn(appearance.subTitleColor, card);
  return QStringLiteral(
             "#kifoPopupField { %1 color: %2; background: %3; border: 1px solid %4;"
             "  border-radius: %5px; padding: 0 6px; margin: 0; min-width: 0; min-height: 0;"
             "  selection-background-color: %6; selection-color: %7; }"
             "#kifoPopupField:focus { border: 2px solid %6; padding: 0 5px; }")
      .arg(css(appearance.kTextFont), ink.name(), mixed(card, ink, 0.03).name(),
           mixed(card, ink, 0.35).name())
      .arg(appearance.fieldCornerRadius)
      .arg(accent.name(), readableOn(Qt::white, accent).name());
}

QString scrollBar(const KifoAppearance& appearance) {
  const QColor card = appearance.contentViewColor;
  const QColor ink = readableOn(appearance.subTitleColor, card);
  return QStringLiteral(
             "#kifoPopupScroll QScrollBar:vertical { background: transparent; border: none;"
             "  width: %1px; margin: 2px; }"
             "#kifoPopupScroll QScrollBar::handle:vertical { background: %2; border-radius: 2px;"
             "  min-height: 24px; }"
             "#kifoPopupScroll QScrollBar::add-line, #kifoPopupScroll QScrollBar::sub-line {"
             "  width: 0; height: 0; border: none; background: none; }"
             "#kifoPopupScroll QScrollBar::add-page, #kifoPopupScroll QScrollBar::sub-page {"
             "  background: none; }")
      .arg(AlertStyleSheet::kScrollBarWidth)
      .arg(mixed(card, ink, 0.45).name());
}

}  // namespace

QString AlertStyleSheet::forCard(const KifoAppearance& appearance, const QColor& accent) {
  return shield() + fields(appearance, accent) + scrollBar(appearance);
}

}  // namespace kifo
