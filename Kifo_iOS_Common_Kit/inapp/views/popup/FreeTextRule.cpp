#include "Kifo_iOS_Common_Kit/inapp/views/popup/FreeTextRule.h"

#include <QTextBoundaryFinder>

namespace kifo {
namespace {

int characters(const QString& text) {
  QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
  int count = 0;
  while (finder.toNextBoundary() >= 0) ++count;
  return count;
}

/// The longest beginning of whole characters that takes at most `room` bytes.
QString prefix(const QString& text, int room) {
  QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
  qsizetype end = 0;
  int used = 0;
  for (auto next = finder.toNextBoundary(); next >= 0; next = finder.toNextBoundary()) {
    used += FreeTextRule::bytes(text.mid(end, next - end));
    if (used > room) break;
    end = next;
  }
  return text.left(end);
}

}  // namespace

int FreeTextRule::bytes(const QString& text) {
  return static_cast<int>(text.toUtf8().size());
}

FreeTextRule::Verdict FreeTextRule::shouldChange(const QString& current,
                                                 const QString& replacement) {
  using Kind = Verdict::Kind;
  if (current.isEmpty() && replacement == QLatin1String(" ")) return {Kind::refuse, {}};
  if (replacement.isEmpty()) return {};
  const int used = bytes(current);
  const int added = bytes(replacement);
  if (added <= freeTextMaksCount && added + used < freeTextMaksCount) {
    if (characters(replacement) > freeTextMaksCount - 1) return {Kind::refuse, {}};
    return {characters(current) < freeTextMaksCount ? Kind::accept : Kind::refuse, {}};
  }
  return {Kind::replaceAll, current + prefix(replacement, freeTextMaksCount - used)};
}

QString FreeTextRule::count(const QString& text) {
  return QStringLiteral("%1/%2").arg(bytes(text)).arg(freeTextMaksCount);
}

}  // namespace kifo
