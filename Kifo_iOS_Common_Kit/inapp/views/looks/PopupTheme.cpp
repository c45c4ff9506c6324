#include "Kifo_iOS_Common_Kit/inapp/views/looks/PopupTheme.h"

#include <algorithm>
#include <cmath>

#include <QFontInfo>
#include <QGuiApplication>
#include <QPalette>

#include "Kifo_iOS_Common_Kit/inapp/views/looks/QtColors.h"

namespace kifo {

PopupTheme PopupTheme::of(const PopupPreferences& preferences, const PopUpOptions& options,
                          const QPalette& window) {
  PopupTheme theme;
  theme.options = options;
  theme.options.fontScale =
      std::clamp(std::isfinite(options.fontScale) ? options.fontScale : 1.0, 1.0, 2.0);
  // The host's font by the name it resolves to, so that what it lacks, and only that, comes in
  // colour.
  theme.families = {QFontInfo(QGuiApplication::font()).family(),
                    QStringLiteral("Noto Color Emoji")};
  theme.palette =
      PopupPalette::of(preferences, options.contrast, toColor(window.color(QPalette::Window)));
  theme.takeColors();
  return theme;
}

PopupTheme PopupTheme::ofHost(const QPalette& colors, const PopUpOptions& options) {
  PopupTheme theme;
  theme.options = options;
  const Color panel = toColor(colors.color(QPalette::Window));
  theme.palette = {options.contrast, panel, panel, toColor(colors.color(QPalette::WindowText)),
                   toColor(colors.color(QPalette::Highlight))};
  theme.takeColors();
  return theme;
}

void PopupTheme::takeColors() {
  panelFill = toQColor(palette.panelFill);
  panel = toQColor(palette.panel);
  ink = toQColor(palette.ink);
  accent = toQColor(palette.accent);
}

QFont PopupTheme::font(TextRole role) const {
  const TextFace face = faceOf(role);
  QFont font = QGuiApplication::font();
  font.setFamilies(families);
  font.setPixelSize(static_cast<int>(std::lround(face.pixels * options.fontScale)));
  font.setWeight(static_cast<QFont::Weight>(face.weight));
  font.setItalic(false);
  return font;
}

QColor PopupTheme::text(TextRole role, const QColor& wanted, const QColor& behind) const {
  return toQColor(palette.text(role, toColor(wanted), toColor(behind)));
}

QColor PopupTheme::shade(double amount) const {
  return toQColor(palette.shade(amount));
}

QColor PopupTheme::accentOn(const QColor& surface) const {
  return toQColor(palette.accentOn(toColor(surface)));
}

int PopupTheme::milliseconds(std::chrono::milliseconds duration) const {
  return options.reducedMotion ? 0 : static_cast<int>(duration.count());
}

}  // namespace kifo
