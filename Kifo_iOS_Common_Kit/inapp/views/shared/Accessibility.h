#pragma once

#include <QAccessible>

class QWidget;

namespace kifo {

/// Gives a widget that is none of Qt's own controls its role for assistive technology. Its name and
/// description are the widget's `accessibleName` and `accessibleDescription`.
///
/// **Threading:** UI thread only.
void setAccessibleRole(QWidget* widget, QAccessible::Role role);

/// Has assistive technology read out the name and the description of what has just opened.
void announceOpening(QWidget* overlay);

/// Has Qt make the widget's interface anew. Naming a widget makes it keep one, and one that was
/// made before the widget's role was known says the wrong role for good.
void renewAccessible(QWidget* widget);

}  // namespace kifo
