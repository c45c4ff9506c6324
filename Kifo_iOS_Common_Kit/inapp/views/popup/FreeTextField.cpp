#include "Kifo_iOS_Common_Kit/inapp/views/popup/FreeTextField.h"

#include <QPainter>

#include "Kifo_iOS_Common_Kit/inapp/views/looks/FreeTextValidator.h"
#include "Kifo_iOS_Common_Kit/inapp/views/looks/PanelLooks.h"
#include "Kifo_iOS_Common_Kit/inapp/views/looks/QtColors.h"
#include "Kifo_iOS_Common_Kit/inapp/views/shared/HostStyleSheet.h"

namespace kifo {
namespace {

QPalette colorsOf(const PopupTheme& theme, const QColor& fill) {
  QPalette palette;
  palette.setColor(QPalette::Base, Qt::transparent);
  palette.setColor(QPalette::Text, inkOn(fill));
  palette.setColor(QPalette::Highlight, theme.accent);
  palette.setColor(QPalette::HighlightedText, inkOn(theme.accent));
  return palette;
}

/// The same as a sheet, which a host's sheet would otherwise override.
QString sheetOf(const QPalette& colors) {
  return QStringLiteral(
             "background: transparent; border: none; padding: 0; color: %1;"
             " selection-background-color: %2; selection-color: %3;")
      .arg(colors.color(QPalette::Text).name(), colors.color(QPalette::Highlight).name(),
           colors.color(QPalette::HighlightedText).name());
}

}  // namespace

FreeTextField::FreeTextField(const PopupTheme& theme, QWidget* parent)
    : QLineEdit(parent), theme_(theme) {
  setFrame(false);
  setFont(theme.font(TextRole::field));
  const QPalette colors = colorsOf(theme, theme.shade(0.05));
  setPalette(colors);
  if (isUnderStyleSheet(parent)) setStyleSheet(sheetOf(colors));
  setTextMargins(10, 0, 10, 0);
  setMinimumSize(0, 0);
  auto* validator = new FreeTextValidator(this);
  connect(this, &QLineEdit::textChanged, validator, &FreeTextValidator::setBefore);
  setValidator(validator);
}

void FreeTextField::paintEvent(QPaintEvent* event) {
  {
    QPainter painter(this);
    paintField(painter, theme_, rect(), underMouse(), hasFocus());
  }
  QLineEdit::paintEvent(event);
}

}  // namespace kifo
