#pragma once

#include <QAccessible>

class QWidget;

namespace kifo {

/// Gives a widget that is none of Qt's own controls its role for assistive technology. Its name and
/// description are the widget's `accessibleName` and `accessibleDescription`.
///
/// **Threading:** UI thread only.
void setAccessibleRole(QWidget* widget, QAccessible::Role role);

}  // namespace kifo
