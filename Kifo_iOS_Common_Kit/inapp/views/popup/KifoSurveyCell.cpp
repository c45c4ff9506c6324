#include "Kifo_iOS_Common_Kit/inapp/views/popup/KifoSurveyCell.h"

#include <algorithm>

#include <QPainter>
#include <QStyle>

#include "Kifo_iOS_Common_Kit/inapp/views/looks/QtColors.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/OptionButton.h"
#include "Kifo_iOS_Common_Kit/inapp/views/shared/TextLabel.h"

namespace kifo {
namespace {

constexpr int kInset = 3;  ///< Between two rows' surfaces, above and below each.
constexpr int kMarkStart = 12;
constexpr int kMark = 22;  ///< Diameter.
constexpr int kTextStart = 46;
constexpr int kTextEnd = 12;
constexpr int kTextPadding = 6;
constexpr double kCorner = 8;
constexpr double kSeenSurface = 1.1;  ///< Contrast from which a surface is seen on the panel.
constexpr double kTint = 0.06;        ///< Of ink in a surface that would not be seen.

}  // namespace

KifoSurveyCell::KifoSurveyCell(const PopupTheme& theme,
                               std::shared_ptr<AppCommunicationItemButton> choice, int row,
                               int rows, QWidget* parent)
    : QWidget(parent),
      theme_(theme),
      appCommunicationItemButton_(std::move(choice)),
      indexPath_(row),
      surface_(toQColor(colorOf(appCommunicationItemButton_->color))),
      titleLbl_(new TextLabel(this)),
      selectButton_(new OptionButton(this)) {
  setObjectName(identifier);
  titleLbl_->setObjectName("titleLbl");
  selectButton_->setObjectName("selectButton");
  QString text = QString::fromStdString(appCommunicationItemButton_->text.value_or(""));
  if (text.trimmed().isEmpty()) text = theme.options.texts.option.arg(row + 1).arg(rows);
  const QColor surface = seenSurface();
  const QColor wanted =
      toQColor(colorOf(appCommunicationItemButton_->textColor)).value_or(inkOn(surface));
  titleLbl_->setFace(theme.font(TextRole::option), theme.text(TextRole::option, wanted, surface),
                     TextLabel::Alignment::leading);
  titleLbl_->setText(text);
  selectButton_->setAccessibleName(text);
  connect(selectButton_, &QAbstractButton::clicked, this, [this] {
    if (const auto select = selectItem) select(appCommunicationItemButton_);
  });
}

const char* KifoSurveyCell::radialButton() const {
  return selectButton_->isChecked() ? "largecircle.fill.circle" : "circle";
}

void KifoSurveyCell::setChosen(bool chosen) {
  selectButton_->setChosen(chosen);
}

int KifoSurveyCell::heightFor(int width) const {
  return titleLbl_->heightForWidth(width - kTextStart - kTextEnd) + 2 * (kTextPadding + kInset);
}

QColor KifoSurveyCell::seenSurface() const {
  return surface_ ? over(*surface_, theme_.panel) : theme_.panel;
}

QRectF KifoSurveyCell::surfaceRect() const {
  return QRectF(rect()).adjusted(0, kInset, 0, -kInset);
}

void KifoSurveyCell::resizeEvent(QResizeEvent*) {
  selectButton_->setGeometry(rect());
  const QRect text = rect().adjusted(kTextStart, 0, -kTextEnd, 0);
  titleLbl_->setGeometry(QStyle::visualRect(layoutDirection(), rect(), text));
}

void KifoSurveyCell::paintMark(QPainter& painter, const QColor& surface) const {
  const QRect place(kMarkStart, (height() - kMark) / 2, kMark, kMark);
  const QRectF mark = QStyle::visualRect(layoutDirection(), rect(), place);
  const bool chosen = selectButton_->isChecked();
  painter.setPen(QPen(chosen ? theme_.accentOn(surface) : mixed(surface, inkOn(surface), 0.55), 2));
  painter.setBrush(Qt::NoBrush);
  painter.drawEllipse(mark.adjusted(1, 1, -1, -1));
  if (!chosen) return;
  painter.setPen(Qt::NoPen);
  painter.setBrush(theme_.accentOn(surface));
  painter.drawEllipse(mark.adjusted(6, 6, -6, -6));
}

/// A row whose colour is the panel's is tinted, so that it is seen as a row.
QColor KifoSurveyCell::restingSurface() const {
  const QColor surface = seenSurface();
  if (selectButton_->isChecked()) return mixed(surface, theme_.accentOn(surface), 0.1);
  const bool seen = contrastRatio(surface, theme_.panel) >= kSeenSurface;
  return seen ? surface : mixed(surface, inkOn(surface), kTint);
}

void KifoSurveyCell::paintSurface(QPainter& painter, const QColor& surface) const {
  const bool chosen = selectButton_->isChecked();
  const double touched = selectButton_->isDown() ? 0.1 : selectButton_->underMouse() ? 0.04 : 0.0;
  const QRectF bounds = surfaceRect();
  painter.setPen(Qt::NoPen);
  painter.setBrush(mixed(restingSurface(), inkOn(surface), touched));
  painter.drawRoundedRect(bounds, kCorner, kCorner);
  if (!chosen) return;
  painter.setPen(QPen(mixed(surface, theme_.accentOn(surface), 0.6), 1));
  painter.setBrush(Qt::NoBrush);
  painter.drawRoundedRect(bounds.adjusted(0.5, 0.5, -0.5, -0.5), kCorner, kCorner);
}

void KifoSurveyCell::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const QColor surface = seenSurface();
  paintSurface(painter, surface);
  paintMark(painter, surface);
  if (selectButton_->showsFocus()) {
    paintFocusRing(painter, surfaceRect(), kCorner, restingSurface(), theme_.accent);
  }
}

}  // namespace kifo
