// The face as the session drives it: title, level picture, clock fields and the
// position thumb. Plain bodies until the skin paints them.
#include "app/Runtime.h"
#include "player/frmMain.h"

namespace cantovel {

void frmMain::Title(const QString& text) {
    if (text == titleCaption_) return;
    titleCaption_ = text;
    update();
}

QString frmMain::TitleText() const {
    return titleCaption_;
}

void frmMain::EQVolume(quint8 level) {
    eqLevel_ = level;
    update();
}

void frmMain::ShowClockField(int firstCell, const QString& text) {
    QString& cached = clockFieldText_[firstCell / 6 ? 1 : 0];
    if (cached == text) return;
    cached = text;
    update();
}

void frmMain::ThumbFromTime(double position, double length) {
    if (length == 0) return;  // nothing loaded: the thumb stays
    int left = int(Int(position / length * (268 - imgPlayProgress.rect.width()))) + 16;
    if (left < 16) left = 16;
    if (left != imgPlayProgress.rect.left()) MoveThumb(left);
}

double frmMain::TimeFromThumb(double length) const {
    const int span = 268 - imgPlayProgress.rect.width();
    if (span == 0) return 0;
    return double(CInt(double(imgPlayProgress.rect.left() - 16) / span * length));
}

void frmMain::MoveThumb(int left) {
    imgPlayProgress.rect.moveLeft(left);
    update();
}

}  // namespace cantovel
