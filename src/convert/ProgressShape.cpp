#include "convert/ProgressShape.h"

#include <QPainter>
#include <algorithm>

namespace cantovel {

namespace {
constexpr double kTwipsPerPixel = 15;
}

ProgressShape::ProgressShape(double designWidth, QWidget* parent)
    : QWidget(parent), width_(designWidth) {
    setFixedSize(int(designWidth / kTwipsPerPixel) + 2, 16);
}

void ProgressShape::setWidth(double twips) {
    width_ = std::max(0.0, twips);
    update();
}

void ProgressShape::paintEvent(QPaintEvent*) {
    QPainter p(this);
    p.setPen(palette().color(QPalette::Mid));
    p.drawRect(rect().adjusted(0, 0, -1, -1));
    const int pixels = std::min(width() - 2, int(width_ / kTwipsPerPixel));
    if (pixels > 0) p.fillRect(1, 1, pixels, height() - 2, palette().color(QPalette::Highlight));
}

}  // namespace cantovel
