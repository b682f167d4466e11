// The face as the session drives it: title, level picture, clock fields and the
// position thumb. Plain bodies until the skin paints them.
#include "app/Runtime.h"
#include "app/Utilities.h"
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

void frmMain::EQVolume(int Level) {
    eqLevel_ = Level;
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

long frmMain::TimeFromThumb(double Length) const {
    const int span = 268 - imgPlayProgress.rect.width();
    if (span == 0) return 0;
    return long(CInt(double(imgPlayProgress.rect.left() - 16) / span * Length));
}

QString frmMain::ClockText(double Seconds) {
    TimeDigits d;
    ConvertSeconds(Seconds, true, false, &d);
    return QString::number(qint64(Val(d.hours + d.minutes + d.seconds)));
}

void frmMain::ShowPosition(double Position, double Length) {
    ThumbFromTime(Position, Length);
    ShowClockField(0, ClockText(double(TimeFromThumb(Length))));
}

void frmMain::imgPlayProgress_MouseMove(int Button, int, int X, int) {
    if (Button == 0) {
        progressAnchor_ = X;
        return;
    }
    if (Button != 1 || CurrentFile.isEmpty()) return;
    const int last = 268 - imgPlayProgress.rect.width();
    int left = imgPlayProgress.rect.left() + X - progressAnchor_;
    if (left < 16) left = 16;
    if (left > last) left = last;
    MoveThumb(left);
    SeekFromThumb();
}

}  // namespace cantovel
