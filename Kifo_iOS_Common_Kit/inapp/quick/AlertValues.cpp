#include "Kifo_iOS_Common_Kit/inapp/quick/AlertValues.h"

#include "Kifo_iOS_Common_Kit/inapp/views/looks/QtColors.h"

namespace kifo {
namespace {

QVariantMap mapOf(const AlertPlaces::Row& row) {
  return {{"headerPlace", row.header},
          {"valuePlace", row.value},
          {"isBeside", row.isBeside},
          {"line", row.line}};
}

QVariantList listOf(const std::vector<QRect>& rects) {
  return {rects.begin(), rects.end()};
}

}  // namespace

QVariantMap valuesOf(const AlertColors& colors, const KifoAppearance& appearance,
                     const QColor& circle) {
  return {{"card", colors.card},
          {"border", colors.border},
          {"title", colors.title},
          {"text", colors.text},
          {"accent", colors.accent},
          {"line", colors.line},
          {"field", colors.field},
          {"fieldBorder", colors.fieldBorder},
          {"selectedText", colors.selectedText},
          {"ink", inkOn(colors.card)},
          {"disc", appearance.circleBackgroundColor},
          {"circle", circle}};
}

QVariantMap looksOf(const KifoAppearance& appearance) {
  const auto alignment = AlertLayout::alignmentOf(appearance.textViewAlignment);
  return {{"text", appearance.kTextFont},
          {"row", AlertLayout::rowFont(appearance)},
          {"button", appearance.kButtonFont},
          {"cardRadius", appearance.contentViewCornerRadius},
          {"fieldRadius", appearance.fieldCornerRadius},
          {"buttonRadius", appearance.buttonCornerRadius},
          {"alignment", static_cast<int>(alignment)}};
}

QVariantMap valuesOf(const AlertPlaces& places, const std::vector<TypeData>& rows) {
  QVariantList list;
  for (std::size_t i = 0; i < places.rows.size(); ++i) {
    QVariantMap row = mapOf(places.rows[i]);
    row.insert("header", rows[i].header);
    row.insert("value", rows[i].value);
    list.append(row);
  }
  return {{"card", places.card},
          {"panel", places.panel},
          {"disc", places.disc},
          {"circle", places.circle},
          {"icon", places.icon},
          {"cross", places.cross},
          {"viewport", places.viewport},
          {"scrolls", places.scrolls},
          {"contents", places.contents},
          {"titleFont", places.titleFont},
          {"title", places.title},
          {"text", places.text},
          {"list", places.list},
          {"heading", places.heading},
          {"rows", list},
          {"fields", listOf(places.fields)},
          {"custom", places.custom},
          {"buttons", listOf(places.buttons)}};
}

}  // namespace kifo
