// The playlist editor as a window: its load and layout, the painted face and its mouse,
// the menu words and their menus' states, list tips, keys, window messages and closing.
#include <QApplication>
#include <QCursor>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QScreen>

#include "app/Forms.h"
#include "app/Runtime.h"
#include "app/Settings.h"
#include "platform/msgbox/MsgBox.h"
#include "player/HelpFile.h"
#include "player/frmMain.h"
#include "player/frmTemp.h"
#include "playlist/PlaylistDocking.h"
#include "playlist/PlaylistFile.h"
#include "playlist/PlaylistSettings.h"
#include "playlist/frmPlaylist.h"
#include "playlist/frmTemp2.h"
#include "shell/TwipsPerPixel.h"

namespace cantovel {

namespace {

namespace Vk {
constexpr int Insert = 0x2D, Delete = 0x2E;
constexpr int F1 = 0x70, F2 = 0x71, F3 = 0x72, F4 = 0x73, F5 = 0x74, F6 = 0x75, F7 = 0x76;
}  // namespace Vk

int keyCode(int qtKey) {
    if (qtKey >= Qt::Key_A && qtKey <= Qt::Key_Z) return qtKey;
    if (qtKey >= Qt::Key_F1 && qtKey <= Qt::Key_F24) return Vk::F1 + (qtKey - Qt::Key_F1);
    if (qtKey == Qt::Key_Delete) return Vk::Delete;
    if (qtKey == Qt::Key_Insert) return Vk::Insert;
    return 0;
}

int vbShift(Qt::KeyboardModifiers m) {
    return (m & Qt::ShiftModifier ? 1 : 0) | (m & Qt::ControlModifier ? 2 : 0) |
           (m & Qt::AltModifier ? 4 : 0);
}

const char* const ButtonTips[6] = {"Add File(s)",   "Remove File(s)", "Load Playlist",
                                   "Save Playlist", "Move Up",        "Move Down"};

}  // namespace

frmPlaylist* frmPlaylist::instance() {
    return Forms::find<frmPlaylist>();
}

frmPlaylist::frmPlaylist() : Form(QStringLiteral("frmPlaylist")) {
    lstPlayList = new PlaylistListBox(this);
    lstPlayList->installEventFilter(this);
    connect(lstPlayList, &PlaylistListBox::Click, this, &frmPlaylist::lstPlayList_Click);
    connect(lstPlayList, &PlaylistListBox::DblClick, this, &frmPlaylist::lstPlayList_DblClick);
    connect(lstPlayList, &PlaylistListBox::MouseUp, this, &frmPlaylist::lstPlayList_MouseUp);
    connect(lstPlayList, &PlaylistListBox::MouseMove, this, &frmPlaylist::lstPlayList_MouseMove);
    connect(&Subclass1, &Subclass::WndProc, this, &frmPlaylist::Subclass1_WndProc);
    Form_Load();
}

frmPlaylist::~frmPlaylist() = default;

void frmPlaylist::Form_Load() {
    // 1. No caption: the skin draws the window's furniture.
    setWindowFlags(Qt::Window | Qt::FramelessWindowHint);
    setWindowTitle(QStringLiteral("Playlist Editor"));
    setMouseTracking(true);
    // The menus and their checks come with the window.
    frmTemp2::get();

    // 2.
    Mover.setForm(this);

    // 6 comes first here: the docking below reads the window's size.
    setFixedSize(300, 175);
    layOut();

    // 3. The stored place. Until one is stored, the editor stands where docking puts it,
    // so the main window does not move to meet a window that was never placed.
    move(PlaylistPlaceBesideMain(PlaylistSettings::dockSetting()));
    const double tpp = TwipsPerPixel(this);
    const double top = Val(
        ReadAppSetting(QStringLiteral("Playlist Window Top"), QString::number(qRound(y() * tpp))));
    const double left = Val(
        ReadAppSetting(QStringLiteral("Playlist Window Left"), QString::number(qRound(x() * tpp))));
    move(int(left / tpp), int(top / tpp));

    // 4. At opening the main window comes to the editor.
    if (PlaylistSettings::dockSetting() < 4) MoveMainToPlaylist();

    // 5. The names of the rows the main window already holds.
    frmMain* main = frmMain::instance();
    if (main && !main->List1.isEmpty() && main->List1.size() != lstPlayList->ListCount()) {
        lstPlayList->Clear();
        QStringList names;
        names.reserve(main->List1.size());
        for (const QString& path : std::as_const(main->List1)) names << PlaylistFile::RowName(path);
        lstPlayList->AddItems(names);
    }

    // 7.
    if (main) main->PlaylistSaved = VTrue;

    // 8.
    QString skinPath = ReadAppSetting(QStringLiteral("SkinPath"), QString());
    LoadPlaylistSkin(skinPath);

    // 9. Moves (a docked main window follows), place changes (kept in the work area), drops.
    Subclass1.setHWnd(this);
    for (quint32 msg : {Wm::DROPFILES, Wm::MOVE, Wm::WINDOWPOSCHANGING})
        Subclass1.setMessages(msg, true);
    setAcceptDrops(true);

    // 10.
    lstPlayList_Click();
    windowLoaded_ = true;
    show();
}

void frmPlaylist::layOut() {
    lstPlayList->setGeometry(18, 41, 265, 83);
    for (int i = 0; i < 6; ++i) {
        imgButton[i].rect = QRect(17 + 24 * i, 142, 24, 18);
        imgButton[i].toolTip = QString::fromLatin1(ButtonTips[i]);
    }
    imgSysMenu.rect = QRect(3, 3, 10, 10);
    imgMinimize.rect = QRect(276, 3, 9, 9);
    imgMinimize.toolTip = QStringLiteral("Minimize");
    imgClose.rect = QRect(288, 3, 9, 9);
    imgClose.toolTip = QStringLiteral("Close");
    lblmnuFile.rect = QRect(16, 20, 25, 11);
    lblmnuEdit.rect = QRect(40, 20, 25, 11);
    lblmnuOptions.rect = QRect(64, 20, 42, 11);
    lblmnuHelp.rect = QRect(112, 20, 25, 11);
}

// ---- Menu states ----

void frmPlaylist::lstPlayList_Click() {
    frmTemp2& menus = frmTemp2::get();
    const int selected = lstPlayList->SelCount();
    const bool one = lstPlayList->ListCount() > 1 && selected == 1;
    menus.mnuMoveUp->setEnabled(one);
    menus.mnuMoveDown->setEnabled(one);
    menus.mnuRemove->setEnabled(selected >= 1);
    menus.mnuDeselectAll->setEnabled(menus.mnuRemove->isEnabled());
}

void frmPlaylist::lstPlayList_MouseUp(int Button, int, int, int) {
    lstPlayList_Click();
    frmTemp2& menus = frmTemp2::get();
    const int selected = lstPlayList->SelCount();
    frmMain* main = frmMain::instance();
    menus.popSave->setEnabled(main && !main->List1.isEmpty());
    menus.mnuDeleteDupes->setEnabled(selected > 3);
    menus.popRemove->setEnabled(selected >= 1);
    menus.popDeselectAll->setEnabled(selected >= 1);
    menus.popMoveUp->setEnabled(selected == 1);
    menus.popMoveDown->setEnabled(selected == 1);
    if (Button == 2) menus.mnuPopup->popup(QCursor::pos());
}

void frmPlaylist::lstPlayList_MouseMove(int Button, int, int X, int Y) {
    if (Button != 0) return;
    // The row under the pointer names itself in the list's tip.
    const int row = lstPlayList->ItemFromPoint(QPoint(X, Y));
    lstPlayList->setToolTip(row >= 0 ? lstPlayList->List(row) : QString());
}

// ---- Menu words, buttons and the caption's boxes ----

void frmPlaylist::popupBelow(QMenu* menu, const SkinControl& label) {
    menu->popup(mapToGlobal(QPoint(label.rect.left(), label.rect.top() + label.rect.height() + 5)));
}

void frmPlaylist::lblmnuFile_Click() {
    popupBelow(frmTemp2::get().mnuFile, lblmnuFile);
}

void frmPlaylist::lblmnuEdit_Click() {
    frmTemp2& menus = frmTemp2::get();
    menus.mnuDeleteDupes->setEnabled(lstPlayList->SelCount() > 3);
    popupBelow(menus.mnuEdit, lblmnuEdit);
}

void frmPlaylist::lblmnuOptions_Click() {
    popupBelow(frmTemp2::get().mnuOptions, lblmnuOptions);
}

void frmPlaylist::lblmnuHelp_Click() {
    ShowHelpTopic(QStringLiteral("Playlists"));
}

void frmPlaylist::imgButton_Click(int Index) {
    switch (Index) {
        case 0:
            mnuAdd();
            break;
        case 1:
            mnuRemove();
            break;
        case 2:
            mnuLoad();
            break;
        case 3:
            mnuSave();
            break;
        case 4:
            mnuMoveUp();
            break;
        case 5:
            mnuMoveDown();
            break;
        default:
            break;
    }
}

void frmPlaylist::imgButton_MouseDown(int Index, int Button) {
    if (Button != 1) return;
    for (int i = 0; i < 6; ++i)
        imgButton[i].setPicture(i == Index ? clpButtons.GraphicCell(i) : QPixmap());
    update();
}

void frmPlaylist::imgButton_MouseUp(int, int Button) {
    if (Button != 1) return;
    for (SkinControl& b : imgButton) b.setPicture(QPixmap());
    update();
}

void frmPlaylist::PrepareMenu() {
    frmTemp2& menus = frmTemp2::get();
    const bool minimised = isMinimized(), maximised = isMaximized();
    menus.popRestore->setEnabled(minimised || maximised);
    menus.popMove->setVisible(!minimised && !maximised);
    menus.popMinimize->setEnabled(!minimised);
    menus.popClose->setEnabled(true);
}

void frmPlaylist::imgSysMenu_Click() {
    PrepareMenu();
    popupBelow(frmTemp2::get().popSysMenu, imgSysMenu);
}

// ---- Painting and the mouse ----

void frmPlaylist::paintEvent(QPaintEvent*) {
    QPainter p(this);
    if (Picture.isNull())
        p.fillRect(rect(), Qt::black);
    else
        p.drawPixmap(0, 0, Picture);
    for (const SkinControl& c : imgButton)
        if (c.visible && !c.picture.isNull())
            p.drawPixmap(c.rect.topLeft(), c.picture, QRect(QPoint(0, 0), c.rect.size()));
}

void frmPlaylist::mousePressEvent(QMouseEvent* e) {
    const QPoint pt = e->position().toPoint();
    const SkinControl* places[13] = {&imgButton[0], &imgButton[1], &imgButton[2], &imgButton[3],
                                     &imgButton[4], &imgButton[5], &imgSysMenu,   &imgMinimize,
                                     &imgClose,     &lblmnuFile,   &lblmnuEdit,   &lblmnuOptions,
                                     &lblmnuHelp};
    pressedArea_ = -1;
    for (int i = 0; i < 13; ++i)
        if (places[i]->contains(pt)) pressedArea_ = i;
    if (e->button() != Qt::LeftButton) return;
    if (pressedArea_ >= 0 && pressedArea_ < 6) imgButton_MouseDown(pressedArea_, 1);
    if (pressedArea_ == -1) Mover.HandleMouseDown(pt.x(), pt.y());
}

void frmPlaylist::mouseMoveEvent(QMouseEvent* e) {
    const QPoint pt = e->position().toPoint();
    if (e->buttons() & Qt::LeftButton && pressedArea_ == -1) Mover.HandleMouseMove(pt.x(), pt.y());
    QString tip;
    for (const SkinControl& c : imgButton)
        if (c.contains(pt)) tip = c.toolTip;
    if (imgMinimize.contains(pt)) tip = imgMinimize.toolTip;
    if (imgClose.contains(pt)) tip = imgClose.toolTip;
    setToolTip(tip);
}

void frmPlaylist::mouseReleaseEvent(QMouseEvent* e) {
    const QPoint pt = e->position().toPoint();
    const int area = pressedArea_;
    pressedArea_ = -2;
    if (e->button() != Qt::LeftButton) return;
    if (area == -1) {
        Mover.HandleMouseUp();
        return;
    }
    if (area >= 0 && area < 6) {
        imgButton_MouseUp(area, 1);
        if (imgButton[area].rect.contains(pt)) imgButton_Click(area);
        return;
    }
    switch (area) {
        case 6:
            if (imgSysMenu.rect.contains(pt)) imgSysMenu_Click();
            break;
        case 7:
            if (imgMinimize.rect.contains(pt)) showMinimized();
            break;
        case 8:
            if (imgClose.rect.contains(pt)) unload();
            break;
        case 9:
            lblmnuFile_Click();
            break;
        case 10:
            lblmnuEdit_Click();
            break;
        case 11:
            lblmnuOptions_Click();
            break;
        case 12:
            lblmnuHelp_Click();
            break;
        default:
            break;
    }
}

// ---- Keys ----

void frmPlaylist::keyPressEvent(QKeyEvent* e) {
    const int code = keyCode(e->key());
    if (!code || !Form_KeyDown(code, vbShift(e->modifiers()))) Form::keyPressEvent(e);
}

bool frmPlaylist::eventFilter(QObject* watched, QEvent* event) {
    // The list has the focus most of the time; the window's keys win over its own.
    if (watched == lstPlayList && event->type() == QEvent::KeyPress) {
        auto* e = static_cast<QKeyEvent*>(event);
        const int code = keyCode(e->key());
        if (code && Form_KeyDown(code, vbShift(e->modifiers()))) return true;
    }
    return Form::eventFilter(watched, event);
}

bool frmPlaylist::Form_KeyDown(int KeyCode, int Shift) {
    frmTemp2& menus = frmTemp2::get();
    switch (Shift) {
        case 4:  // Alt
            switch (KeyCode) {
                case Vk::F4:
                    unload();
                    return true;
                case 'F':
                    lblmnuFile_Click();
                    return true;
                case 'E':
                    lblmnuEdit_Click();
                    return true;
                case 'O':
                    lblmnuOptions_Click();
                    return true;
                case 'H':
                    lblmnuHelp_Click();
                    return true;
            }
            return false;
        case 2:  // Ctrl
            switch (KeyCode) {
                case 'N':
                    mnuNew();
                    return true;
                case 'L':
                    mnuLoad();
                    return true;
                case 'S':
                    mnuSave();
                    return true;
                case Vk::Insert:
                    mnuAdd();
                    return true;
                case 'U':
                    mnuMoveUp();
                    return true;
                case 'D':
                    mnuMoveDown();
                    return true;
                case 'T':
                    mnuDeselectAll();
                    return true;
            }
            return false;
        case 1:  // Shift
            if (KeyCode != Vk::Delete) return false;
            menus.mnuDeleteDupes_Click();
            return true;
        case 0:
            switch (KeyCode) {
                case Vk::Delete:
                    mnuRemove();
                    return true;
                case Vk::F1:
                    lblmnuHelp_Click();
                    return true;
                case Vk::F2:
                    menus.mnuRandomPlay_Click();
                    return true;
                case Vk::F3:
                    menus.mnuFullScreen_Click();
                    return true;
                case Vk::F4:
                    menus.mnuLoopPlaylist_Click();
                    return true;
                case Vk::F5:
                    menus.mnuOntop_Click();
                    return true;
                case Vk::F6:
                    frmTemp::get().mnuSeekPrev_Click();
                    return true;
                case Vk::F7:
                    frmTemp::get().mnuSeekNext_Click();
                    return true;
            }
            return false;
    }
    return false;
}

// ---- Window messages ----

void frmPlaylist::Subclass1_WndProc(quint32 Msg, qintptr wParam, qintptr lParam, long* Result) {
    switch (Msg) {
        case Wm::MOVE:
            if (windowLoaded_) MoveMainToPlaylist();
            break;
        case Wm::WINDOWPOSCHANGING: {
            auto* pos = reinterpret_cast<WindowPos*>(lParam);
            const QScreen* s = screen() ? screen() : QGuiApplication::primaryScreen();
            if (pos && s) frmMain::KeepInWorkArea(*pos, s->availableGeometry());
            *Result = Subclass1.CallWndProc(Msg, wParam, lParam);
            break;
        }
        case Wm::DROPFILES:
            QApplication::setOverrideCursor(Qt::WaitCursor);
            DroppedFiles = Subclass1.droppedFiles();
            QApplication::restoreOverrideCursor();
            Process_DROPFILES();
            DroppedFiles.clear();
            break;
        default:
            break;
    }
}

// ---- Closing ----

bool frmPlaylist::queryUnload(UnloadMode) {
    const double tpp = TwipsPerPixel(this);
    SaveAppSetting(QStringLiteral("Playlist Window Top"), QString::number(qRound(y() * tpp)));
    SaveAppSetting(QStringLiteral("Playlist Window Left"), QString::number(qRound(x() * tpp)));
    setAcceptDrops(false);
    return false;
}

bool frmPlaylist::unloadEvent() {
    frmMain* main = frmMain::instance();
    if (!PlaylistSettings::flag("Confirm Save on Playlist Close", true) ||
        lstPlayList->ListCount() == 0 || !main || main->PlaylistSaved)
        return false;
    const int answer = MsgBoxShow(QStringLiteral("Do you wish to save your current playlist "
                                                 "configuration before exiting?"),
                                  Mb::YesNoCancel | Mb::Question);
    if (answer == Mb::Yes) mnuSave();
    return answer == Mb::Cancel;
}

}  // namespace cantovel
