#pragma once

#include <QVariantList>
#include <QVariantMap>
#include <vector>

#include "Kifo_iOS_Common_Kit/inapp/views/alertcore/AlertColors.h"
#include "Kifo_iOS_Common_Kit/inapp/views/alertcore/AlertLayout.h"
#include "Kifo_iOS_Common_Kit/inapp/views/alertcore/KifoAppearance.h"
#include "Kifo_iOS_Common_Kit/inapp/views/alertcore/TypeData.h"

namespace kifo {

// What Alert.qml reads of an alert, as maps whose keys are named as the members.

/// With "disc" and "circle", which is `circle`, and "ink" for what is drawn on the card.
QVariantMap valuesOf(const AlertColors& colors, const KifoAppearance& appearance,
                     const QColor& circle);
/// The fonts "text", "row" and "button"; "cardRadius", "fieldRadius" and "buttonRadius" in logical
/// pixels; "alignment" of the text, a `WrappedText::Alignment`.
QVariantMap looksOf(const KifoAppearance& appearance);
/// In logical pixels. "rows" have the texts of `rows` too, of which there are as many.
QVariantMap valuesOf(const AlertPlaces& places, const std::vector<TypeData>& rows);

}  // namespace kifo
