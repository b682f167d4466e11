// The main window's face: the skin's picture with every control at its fixed place, the
// digit fields, the thumbs, the level picture, the title and the roll-up. The controls are
// windowless: they are places on the face that paint a picture and take the mouse.
#include <QHelpEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QToolTip>

#include "app/Forms.h"
#include "app/Runtime.h"
#include "app/Utilities.h"
#include "player/frmMain.h"
#include "player/frmTemp.h"

namespace cantovel {

namespace {

constexpr int ThumbStart = 16;
constexpr int ThumbEnd = 268;
constexpr int BalanceMin = 217;
constexpr int BalanceMax = 279;
constexpr int BalanceCentre = 248;
constexpr int FullHeight = 175;
constexpr int RolledHeight = 38;

const int TimeLefts[6] = {24, 34, 50, 60, 76, 86};

int vbButton(Qt::MouseButton b) {
    switch (b) {
        case Qt::LeftButton:
            return 1;
        case Qt::RightButton:
            return 2;
        case Qt::MiddleButton:
            return 4;
        default:
            return 0;
    }
}

int vbButtons(Qt::MouseButtons b) {
    return (b & Qt::LeftButton ? 1 : 0) | (b & Qt::RightButton ? 2 : 0) |
           (b & Qt::MiddleButton ? 4 : 0);
}

int vbShift(Qt::KeyboardModifiers m) {
    return (m & Qt::ShiftModifier ? 1 : 0) | (m & Qt::ControlModifier ? 2 : 0) |
           (m & Qt::AltModifier ? 4 : 0);
}

}  // namespace

// ---- Layout -------------------------------------------------------------------------------

void frmMain::layOutFace() {
    if (faceLaidOut_) return;
    faceLaidOut_ = true;
    setMouseTracking(true);
    Mover.setForm(this);
    connect(&Subclass1, &Subclass::WndProc, this, &frmMain::Subclass1_WndProc);

    for (int i = 0; i < 6; ++i) {
        imgTime[i].rect = QRect(TimeLefts[i], 42, 9, 17);
        imgTime[6 + i].rect = QRect(TimeLefts[i], 61, 9, 17);
    }
    for (int i = 0; i < 3; ++i) {
        imgTime[12 + i].rect = QRect(129 + 10 * i, 42, 9, 17);
        imgTime[15 + i].rect = QRect(223 + 10 * i, 42, 9, 17);
    }
    imgVolumeButton[0].rect = QRect(163, 40, 16, 10);
    imgVolumeButton[2].rect = QRect(163, 50, 16, 10);
    imgVolumeButton[1].rect = QRect(256, 40, 16, 10);
    imgVolumeButton[3].rect = QRect(256, 50, 16, 10);
    imgVolumeButton[0].toolTip = QStringLiteral("Increase Cantovel Volume");
    imgVolumeButton[1].toolTip = QStringLiteral("Increase Master Volume");
    imgVolumeButton[2].toolTip = QStringLiteral("Decrease Cantovel Volume");
    imgVolumeButton[3].toolTip = QStringLiteral("Decrease Master Volume");

    // The level picture shows only while something plays.
    imgEQ.rect = QRect(121, 77, 161, 7);
    imgEQ.visible = false;
    lblTitle[0].rect = QRect(16, 100, 265, 17);
    lblTitle[1].rect = QRect(17, 100, 265, 17);
    lblTitle[2].rect = QRect(17, 101, 265, 17);
    lblTitle[3].rect = QRect(16, 101, 265, 17);
    imgPlayProgress.rect = QRect(ThumbStart, 119, 16, 16);

    static const char* const buttonTips[8] = {"Seek Previous", "Play",      "Pause", "Stop",
                                              "Seek Next",     "Open File", "Mute",  "Help"};
    for (int i = 0; i < 8; ++i) {
        imgButton[i].rect = QRect(17 + 24 * i, 142, 24, 18);
        imgButton[i].toolTip = QString::fromLatin1(buttonTips[i]);
    }
    imgBalance.rect = QRect(BalanceCentre, 149, 5, 16);
    imgSysMenu.rect = QRect(4, 4, 10, 10);
    imgMinimize.rect = QRect(264, 3, 9, 9);
    imgMinimize.toolTip = QStringLiteral("Minimize");
    imgRollUp.rect = QRect(275, 3, 9, 9);
    imgRollUp.toolTip = QStringLiteral("Roll Up");
    imgClose.rect = QRect(288, 3, 9, 9);
    imgClose.toolTip = QStringLiteral("Close");

    lblmnuFile.rect = QRect(16, 22, 25, 11);
    lblmnuPlayBack.rect = QRect(40, 22, 49, 11);
    lblmnuConversions.rect = QRect(88, 22, 65, 11);
    lblmnuOptions.rect = QRect(152, 22, 41, 11);
    lblmnuWindow.rect = QRect(192, 22, 41, 11);
    lblmnuHelp.rect = QRect(232, 22, 25, 11);

    imgTemp.rect = QRect(264, 16, 17, 17);
    imgTemp.visible = false;
    imgBack.rect = QRect(280, 16, 17, 17);
    imgBack.visible = false;
}

// ---- Painting -----------------------------------------------------------------------------

void frmMain::paintEvent(QPaintEvent* event) {
    QPainter p(this);
    if (Picture.isNull())
        p.fillRect(rect(), Qt::black);
    else
        p.drawPixmap(0, 0, Picture);

    // While playing, only the clock and the level change many times a second: whatever
    // lies outside the changed region is left alone, the title's text above all.
    const QRegion& dirty = event->region();
    // A picture shows at its own size, cut by the control's place.
    auto draw = [&p, &dirty](const SkinControl& c) {
        if (!c.visible || c.picture.isNull() || !dirty.intersects(c.rect)) return;
        p.drawPixmap(c.rect.topLeft(), c.picture, QRect(QPoint(0, 0), c.rect.size()));
    };
    for (const SkinControl& c : imgTime) draw(c);
    for (const SkinControl& c : imgVolumeButton) draw(c);
    for (const SkinControl& c : imgButton) draw(c);
    draw(imgEQ);
    draw(imgPlayProgress);
    draw(imgBalance);

    // The shadows first, the title over them.
    for (int i = 3; i >= 0; --i) {
        const SkinLabel& l = lblTitle[i];
        if (!l.visible || l.Caption.isEmpty() || !dirty.intersects(l.rect)) continue;
        p.save();
        p.setClipRect(l.rect);
        p.setFont(l.font());
        p.setPen(l.ForeColor);
        p.drawText(l.rect, Qt::AlignHCenter | Qt::AlignTop | Qt::TextSingleLine, l.Caption);
        p.restore();
    }
}

// ---- Digit fields -------------------------------------------------------------------------

// The place the cells of a digit field cover.
QRect frmMain::cellsRect(int First, int Count) const {
    QRect r;
    for (int i = First; i < First + Count; ++i) r |= imgTime[i].rect;
    return r;
}

void frmMain::ShowNumberField(int FirstOffset, const QString& Text) {
    const int first = 12 + FirstOffset;
    const QRect before = cellsRect(first, 3);
    for (int i = 0; i < 3; ++i) imgTime[first + i].setPicture(QPixmap());
    int cell = first + 2;
    for (int i = int(Text.size()) - 1; i >= 0 && cell >= first; --i) {
        const QChar c = Text[i];
        if (c < u'0' || c > u'9') continue;
        imgTime[cell--].setPicture(clpDigits.GraphicCell(c.unicode() - u'0'));
    }
    update(before | cellsRect(first, 3));
}

void frmMain::ShowClockField(int FirstCell, const QString& Text) {
    QString& cached = clockCache_[FirstCell / 6];
    if (cached == Text) return;
    const QRect before = cellsRect(FirstCell, 6);
    if (Text.isEmpty()) {
        for (int i = 0; i < 6; ++i) imgTime[FirstCell + i].setPicture(QPixmap());
    } else {
        const QPixmap zero = clpDigits.GraphicCell(0);
        for (int i = 0; i < 6; ++i) imgTime[FirstCell + i].setPicture(zero);
        int cell = FirstCell + 5;
        for (int i = int(Text.size()) - 1; i >= 0 && cell >= FirstCell; --i) {
            const QChar c = Text[i];
            if (c < u'0' || c > u'9') continue;
            imgTime[cell--].setPicture(clpDigits.GraphicCell(c.unicode() - u'0'));
        }
    }
    cached = Text;
    update(before | cellsRect(FirstCell, 6));
}

QString frmMain::ClockText(double Seconds) {
    TimeDigits d;
    ConvertSeconds(Seconds, true, false, &d);
    return QString::number(qint64(Val(d.hours + d.minutes + d.seconds)));
}

void frmMain::PaintVolumes() {
    ShowNumberField(0, QString::number(PlayerVolume));
    ShowNumberField(3, QString::number(MasterVolume));
}

// ---- Thumbs -------------------------------------------------------------------------------

void frmMain::ThumbFromTime(double Position, double Length) {
    if (Length == 0) return;  // no length, no place: the thumb stays
    const qint64 left = std::max<qint64>(
        CInt(Position / Length * double(ThumbEnd - imgPlayProgress.Width()) + ThumbStart),
        ThumbStart);
    if (left != imgPlayProgress.Left()) MoveThumb(int(left));
}

long frmMain::TimeFromThumb(double Length) const {
    const qint64 travelled = CInt(imgPlayProgress.Left() - ThumbStart);
    const qint64 travel = CInt(ThumbEnd - imgPlayProgress.Width());
    if (travel == 0) return 0;
    return long(CInt(double(travelled) / double(travel) * Length));
}

void frmMain::ShowPosition(double Position, double Length) {
    ThumbFromTime(Position, Length);
    ShowClockField(0, ClockText(double(TimeFromThumb(Length))));
}

void frmMain::imgPlayProgress_MouseMove(int Button, int, int X, int) {
    // While no button is held the pointer's place on the thumb is the anchor that a drag
    // keeps under the pointer.
    if (Button == 0) {
        progressAnchor_ = X;
        return;
    }
    if (Button != 1 || CurrentFile.isEmpty()) return;
    const int last = ThumbEnd - imgPlayProgress.Width();
    qint64 left = CInt(double(X - progressAnchor_) + imgPlayProgress.Left());
    if (left < ThumbStart) left = ThumbStart;
    if (left > last) left = last;
    MoveThumb(int(left));
    SeekFromThumb();
}

void frmMain::imgBalance_MouseMove(int Button, int, int X, int) {
    if (Button == 0) {
        balanceAnchor_ = X;
        return;
    }
    if (Button != 1) return;
    qint64 left = CInt(double(X - balanceAnchor_) + imgBalance.Left());
    left = std::clamp<qint64>(left, BalanceMin, BalanceMax);
    // Near the middle the thumb snaps to the centre.
    if (left >= 246 && left <= 250) left = BalanceCentre;
    const QRect before = imgBalance.rect;
    imgBalance.setLeft(int(left));
    update(before | imgBalance.rect);
    ApplyBalance();
}

// ---- Level picture, title, roll-up --------------------------------------------------------

void frmMain::EQVolume(int Level) {
    const QRect before = imgEQ.rect;
    const qint64 width = CInt(Level * 1.61);
    // Ten times a second while playing: an unchanged level paints nothing.
    if (imgEQ.visible == (width != 0) && (width == 0 || width == before.width())) return;
    if (width == 0) {
        imgEQ.visible = false;
    } else {
        imgEQ.visible = true;
        imgEQ.rect.setWidth(int(width));
    }
    update(before | imgEQ.rect);
}

void frmMain::Title(const QString& Text) {
    if (Text == lblTitle[0].Caption) return;
    QRect place;
    for (SkinLabel& l : lblTitle) {
        l.Caption = Text;
        place |= l.rect;
    }
    update(place);
}

QString frmMain::TitleText() const {
    return lblTitle[0].Caption;
}

void frmMain::RollUp() {
    frmTemp& temp = Forms::touch<frmTemp>();
    if (temp.mnuRollup->text() == QLatin1String("&Roll Up")) {
        imgTemp.setPicture(Picture);
        Picture = imgBack.picture;
        setFixedHeight(RolledHeight);
        imgRollUp.toolTip = QStringLiteral("Roll Down");
        temp.mnuRollup->setText(QStringLiteral("&Roll Down"));
    } else {
        Picture = imgTemp.picture;
        imgTemp.setPicture(QPixmap());
        setFixedHeight(FullHeight);
        imgRollUp.toolTip = QStringLiteral("Roll Up");
        temp.mnuRollup->setText(QStringLiteral("&Roll Up"));
    }
    update();
}

// ---- Buttons ------------------------------------------------------------------------------

void frmMain::imgButton_MouseDown(int Index, int Button, int, int, int) {
    if (Button != 1) return;
    for (int i = 0; i < 8; ++i)
        imgButton[i].setPicture(i == Index ? clpButtons.GraphicCell(i) : QPixmap());
    update();
}

void frmMain::imgButton_MouseUp(int, int Button, int, int, int) {
    if (Button != 1) return;
    for (SkinControl& b : imgButton) b.setPicture(QPixmap());
    update();
}

// ---- The mouse over the face --------------------------------------------------------------

frmMain::Area frmMain::areaAt(const QPoint& pt) const {
    for (int i = 0; i < 8; ++i)
        if (imgButton[i].contains(pt)) return {Area::Button, i};
    for (int i = 0; i < 4; ++i)
        if (imgVolumeButton[i].contains(pt)) return {Area::VolumeButton, i};
    if (imgPlayProgress.contains(pt)) return {Area::PlayProgress, 0};
    if (imgBalance.contains(pt)) return {Area::Balance, 0};
    if (imgSysMenu.contains(pt)) return {Area::SysMenu, 0};
    if (imgMinimize.contains(pt)) return {Area::Minimize, 0};
    if (imgRollUp.contains(pt)) return {Area::RollUpBox, 0};
    if (imgClose.contains(pt)) return {Area::Close, 0};
    const SkinControl* words[6] = {&lblmnuFile,    &lblmnuPlayBack, &lblmnuConversions,
                                   &lblmnuOptions, &lblmnuWindow,   &lblmnuHelp};
    // Neighbouring words share their edge column; the later one lies on top.
    for (int i = 5; i >= 0; --i)
        if (words[i]->contains(pt)) return {Area::MenuWord, i};
    for (int i = 0; i < 18; ++i)
        if (imgTime[i].contains(pt)) return {Area::Digit, i};
    if (imgEQ.contains(pt)) return {Area::Level, 0};
    for (int i = 0; i < 4; ++i)
        if (lblTitle[i].contains(pt)) return {Area::TitleLabel, i};
    return {};
}

QRect frmMain::areaRect(const Area& a) const {
    const SkinControl* words[6] = {&lblmnuFile,    &lblmnuPlayBack, &lblmnuConversions,
                                   &lblmnuOptions, &lblmnuWindow,   &lblmnuHelp};
    switch (a.kind) {
        case Area::Button:
            return imgButton[a.index].rect;
        case Area::VolumeButton:
            return imgVolumeButton[a.index].rect;
        case Area::PlayProgress:
            return imgPlayProgress.rect;
        case Area::Balance:
            return imgBalance.rect;
        case Area::SysMenu:
            return imgSysMenu.rect;
        case Area::Minimize:
            return imgMinimize.rect;
        case Area::RollUpBox:
            return imgRollUp.rect;
        case Area::Close:
            return imgClose.rect;
        case Area::MenuWord:
            return words[a.index]->rect;
        case Area::Digit:
            return imgTime[a.index].rect;
        case Area::Level:
            return imgEQ.rect;
        case Area::TitleLabel:
            return lblTitle[a.index].rect;
        case Area::None:
            break;
    }
    return rect();
}

QString frmMain::areaToolTip(const Area& a) const {
    switch (a.kind) {
        case Area::Button:
            return imgButton[a.index].toolTip;
        case Area::VolumeButton:
            return imgVolumeButton[a.index].toolTip;
        case Area::Minimize:
            return imgMinimize.toolTip;
        case Area::RollUpBox:
            return imgRollUp.toolTip;
        case Area::Close:
            return imgClose.toolTip;
        case Area::Digit:
            return imgTime[a.index].toolTip;
        default:
            return {};
    }
}

// `fp` is in the window's pixels; each control is told its own.
void frmMain::areaMouseDown(const Area& a, int button, int shift, const QPoint& fp) {
    const QPoint pt = fp - areaRect(a).topLeft();
    switch (a.kind) {
        case Area::Button:
            imgButton_MouseDown(a.index, button, shift, pt.x(), pt.y());
            break;
        case Area::VolumeButton:
            imgVolumeButton_MouseDown(a.index, button, shift, pt.x(), pt.y());
            break;
        case Area::None:
        case Area::TitleLabel:
            // The background and the title carry the window.
            if (button == 1) Mover.HandleMouseDown(fp.x(), fp.y());
            break;
        default:
            break;
    }
}

void frmMain::areaMouseMove(const Area& a, int buttons, int shift, const QPoint& fp) {
    const QPoint pt = fp - areaRect(a).topLeft();
    switch (a.kind) {
        case Area::PlayProgress:
            imgPlayProgress_MouseMove(buttons, shift, pt.x(), pt.y());
            break;
        case Area::Balance:
            imgBalance_MouseMove(buttons, shift, pt.x(), pt.y());
            break;
        case Area::None:
        case Area::TitleLabel:
            Mover.HandleMouseMove(fp.x(), fp.y());
            break;
        default:
            break;
    }
}

void frmMain::areaMouseUp(const Area& a, int button, int shift, const QPoint& fp) {
    const QPoint pt = fp - areaRect(a).topLeft();
    switch (a.kind) {
        case Area::Button:
            imgButton_MouseUp(a.index, button, shift, pt.x(), pt.y());
            break;
        case Area::VolumeButton:
            imgVolumeButton_MouseUp(a.index, button, shift, pt.x(), pt.y());
            break;
        case Area::None:
        case Area::TitleLabel:
            Mover.HandleMouseUp();
            break;
        default:
            break;
    }
}

void frmMain::areaClick(const Area& a) {
    switch (a.kind) {
        case Area::Button:
            imgButton_Click(a.index);
            break;
        case Area::SysMenu:
            imgSysMenu_Click();
            break;
        case Area::Minimize:
            imgMinimize_Click();
            break;
        case Area::RollUpBox:
            imgRollUp_Click();
            break;
        case Area::Close:
            imgClose_Click();
            break;
        case Area::MenuWord:
            switch (a.index) {
                case 0:
                    lblmnuFile_Click();
                    break;
                case 1:
                    lblmnuPlayBack_Click();
                    break;
                case 2:
                    lblmnuConversions_Click();
                    break;
                case 3:
                    lblmnuOptions_Click();
                    break;
                case 4:
                    lblmnuWindow_Click();
                    break;
                case 5:
                    lblmnuHelp_Click();
                    break;
            }
            break;
        default:
            break;
    }
}

void frmMain::areaDblClick(const Area& a) {
    switch (a.kind) {
        case Area::SysMenu:
            imgSysMenu_DblClick();
            break;
        case Area::None:
            Form_DblClick();
            break;
        default:
            break;
    }
}

// The press goes to the control under the pointer, which then has the mouse until the
// release; a release over the same control is its click.
void frmMain::mousePressEvent(QMouseEvent* e) {
    const QPoint fp = e->position().toPoint();
    pressed_ = areaAt(fp);
    pressActive_ = true;
    dblClicked_ = false;
    areaMouseDown(pressed_, vbButton(e->button()), vbShift(e->modifiers()), fp);
}

void frmMain::mouseMoveEvent(QMouseEvent* e) {
    const QPoint fp = e->position().toPoint();
    areaMouseMove(pressActive_ ? pressed_ : areaAt(fp), pressActive_ ? vbButtons(e->buttons()) : 0,
                  vbShift(e->modifiers()), fp);
}

void frmMain::mouseReleaseEvent(QMouseEvent* e) {
    const QPoint fp = e->position().toPoint();
    const Area a = pressActive_ ? pressed_ : areaAt(fp);
    pressActive_ = e->buttons() != Qt::NoButton;
    areaMouseUp(a, vbButton(e->button()), vbShift(e->modifiers()), fp);
    if (e->button() == Qt::LeftButton && a.kind != Area::None && !dblClicked_ &&
        areaRect(a).contains(fp))
        areaClick(a);
    dblClicked_ = false;
}

// The second press of a double click is the double click: no press and no click of its
// own follow it.
void frmMain::mouseDoubleClickEvent(QMouseEvent* e) {
    const QPoint fp = e->position().toPoint();
    pressed_ = areaAt(fp);
    pressActive_ = true;
    dblClicked_ = true;
    if (e->button() == Qt::LeftButton) areaDblClick(pressed_);
}

bool frmMain::event(QEvent* e) {
    if (e->type() == QEvent::ToolTip) {
        auto* help = static_cast<QHelpEvent*>(e);
        const QString tip = areaToolTip(areaAt(help->pos()));
        if (tip.isEmpty())
            QToolTip::hideText();
        else
            QToolTip::showText(help->globalPos(), tip, this, areaRect(areaAt(help->pos())));
        return true;
    }
    return Form::event(e);
}

}  // namespace cantovel
