#pragma once

class QWidget;

namespace kifo {

/// Keeps a host's style sheet out of a popup. Popups paint themselves, but a sheet that says
/// `QWidget { background: … }` would still fill what is meant to be clear. Does nothing, at no
/// cost, when neither the application nor a widget above `popup` has a sheet.
///
/// **Threading:** UI thread only.
void keepHostStyleOut(QWidget& popup);

/// Whether the application, `widget` or one above it has a style sheet. Null asks the application.
bool isUnderStyleSheet(const QWidget* widget);

}  // namespace kifo
