// The main window has no caption and no menu bar of its own, so it does those jobs itself:
// hotkeys, the menu words that open frmTemp's menus, the system menu, minimise, roll-up
// and close.
#include <QApplication>
#include <QCursor>
#include <QKeyEvent>
#include <QMenu>
#include <QScreen>

#include "app/Forms.h"
#include "app/Runtime.h"
#include "app/Utilities.h"
#include "platform/msgbox/MsgBox.h"
#include "player/frmMain.h"
#include "player/frmTemp.h"
#include "playlist/PlaylistDocking.h"

namespace cantovel {

namespace {

// Virtual key codes of the keys the table names.
namespace Vk {
constexpr int Delete = 0x2E;
constexpr int F1 = 0x70, F2 = 0x71, F3 = 0x72, F4 = 0x73, F5 = 0x74, F6 = 0x75, F7 = 0x76,
              F8 = 0x77, F9 = 0x78, F11 = 0x7A, F12 = 0x7B;
}  // namespace Vk

// The virtual key code of a Qt key: letters and digits are their upper-case character,
// function keys count from 0x70.
int keyCode(int qtKey) {
    if (qtKey >= Qt::Key_A && qtKey <= Qt::Key_Z) return qtKey;
    if (qtKey >= Qt::Key_0 && qtKey <= Qt::Key_9) return qtKey;
    if (qtKey >= Qt::Key_F1 && qtKey <= Qt::Key_F24) return Vk::F1 + (qtKey - Qt::Key_F1);
    if (qtKey == Qt::Key_Delete) return Vk::Delete;
    return 0;
}

}  // namespace

void frmMain::keyPressEvent(QKeyEvent* e) {
    const Qt::KeyboardModifiers m = e->modifiers();
    const int shift = (m & Qt::ShiftModifier ? 1 : 0) | (m & Qt::ControlModifier ? 2 : 0) |
                      (m & Qt::AltModifier ? 4 : 0);
    const int code = keyCode(e->key());
    if (code) Form_KeyDown(code, shift);
}

// Runs a menu item's command, whether the item is enabled or not, as calling its click
// procedure does; a checkable item keeps its check.
static void runCommand(QAction* action) {
    emit action->triggered(action->isChecked());
}

void frmMain::Form_KeyDown(int KeyCode, int Shift) {
    frmTemp& temp = Forms::touch<frmTemp>();
    switch (Shift) {
        case 4:  // Alt
            switch (KeyCode) {
                case Vk::F4:
                    unload();
                    break;
                case 'F':
                    lblmnuFile_Click();
                    break;
                case 'P':
                    lblmnuPlayBack_Click();
                    break;
                case 'C':
                    lblmnuConversions_Click();
                    break;
                case 'O':
                    lblmnuOptions_Click();
                    break;
                case 'W':
                    lblmnuWindow_Click();
                    break;
                case 'H':
                    lblmnuHelp_Click();
                    break;
            }
            break;
        case 2:  // Ctrl
            switch (KeyCode) {
                case 'C':
                    runCommand(temp.mnuCDDB);
                    break;
                case 'I':
                    break;
                case 'E':
                    runCommand(temp.mnuPlaylist);
                    break;
                case 'O':
                    runCommand(temp.mnuPlay);
                    break;
                case 'R':
                    RollUp();
                    break;
                case 'P':
                    runCommand(temp.mnuPlayCurrent);
                    break;
                case 'U':
                    runCommand(temp.mnuPause);
                    break;
                // The user's stop from the menu marks itself; this one does not, so a
                // looping file starts again.
                case 'S':
                    mnuStop();
                    break;
                case 'M':
                    runCommand(temp.mnuMP3Info);
                    break;
                case 'B':
                    runCommand(temp.mnuWAVBatch);
                    break;
                case 'T':
                    runCommand(temp.mnuMinTray);
                    break;
                case Vk::F3:
                    runCommand(temp.mnuWAVtoMP3);
                    break;
                case Vk::F4:
                    runCommand(temp.mnuMP3toWAV);
                    break;
                case Vk::F5:
                    runCommand(temp.mnuCDtoMP3);
                    break;
                case Vk::F6:
                    runCommand(temp.mnuCDtoWAV);
                    break;
                case Vk::F7:
                    runCommand(temp.mnuMailBrightfen);
                    break;
                case Vk::F8:
                    runCommand(temp.mnuVisitBrightfen);
                    break;
            }
            break;
        case 1:  // Shift
            switch (KeyCode) {
                case Vk::F3:
                    runCommand(temp.mnuPreferences);
                    break;
                case Vk::F4:
                    runCommand(temp.mnuAssociate);
                    break;
            }
            break;
        default:  // none, or any other combination
            switch (KeyCode) {
                case Vk::Delete:
                    break;
                case Vk::F1:
                    runCommand(temp.mnuHelpFile);
                    break;
                case Vk::F2:
                case Vk::F3:
                    break;
                case Vk::F6:
                    runCommand(temp.mnuSeekPrev);
                    break;
                case Vk::F7:
                    runCommand(temp.mnuSeekNext);
                    break;
                case Vk::F9:
                    mnuMute();
                    break;
                case Vk::F11:
                    runCommand(temp.mnuAdvCDPlayer);
                    break;
                case Vk::F12:
                    runCommand(temp.mnuAdvVideoCDPlayer);
                    break;
                // A diagnostic of old: the position read back from the thumb.
                case 'X':
                    MsgBoxShow(QString::number(TimeFromThumb(TrackLength)));
                    break;
            }
            break;
    }
}

// ---- Menu words ---------------------------------------------------------------------------

void frmMain::PopupBelow(QMenu* menu, const SkinControl& label) {
    menu->popup(mapToGlobal(QPoint(label.rect.left(), label.rect.top() + label.rect.height() + 5)));
}

void frmMain::lblmnuFile_Click() {
    frmTemp& temp = Forms::touch<frmTemp>();
    temp.mnuMP3Info->setEnabled(ParsePathParts(CurrentFile, QStringLiteral("e")).toLower() ==
                                QLatin1String(".mp3"));
    temp.mnuPlaylist->setChecked(IsFormLoaded(QStringLiteral("frmPlaylist")));
    PopupBelow(temp.mnuFile, lblmnuFile);
}

void frmMain::lblmnuPlayBack_Click() {
    frmTemp& temp = Forms::touch<frmTemp>();
    const bool playing = AnyPlayerPlaying();
    if (temp.mnuPlay->text() == QLatin1String("&Open...") && !playing) {
        temp.mnuStop->setEnabled(false);
        temp.mnuPause->setEnabled(false);
    }
    if (playing) {
        temp.mnuStop->setEnabled(true);
        temp.mnuPause->setEnabled(true);
    }
    temp.mnuPlayCurrent->setEnabled(!List1.isEmpty());
    const bool seekable =
        ParsePathParts(CurrentFile, QStringLiteral("e")).toLower() == QLatin1String(".cda") ||
        (PlaylistRunning && PlayQueue.size() > 1);
    temp.mnuSeekNext->setEnabled(seekable);
    temp.mnuSeekPrev->setEnabled(seekable);
    PopupBelow(temp.mnuPlayback, lblmnuPlayBack);
}

void frmMain::lblmnuConversions_Click() {
    PopupBelow(Forms::touch<frmTemp>().mnuConversions, lblmnuConversions);
}

void frmMain::lblmnuOptions_Click() {
    PopupBelow(Forms::touch<frmTemp>().mnuOptions, lblmnuOptions);
}

void frmMain::lblmnuWindow_Click() {
    PopupBelow(Forms::touch<frmTemp>().mnuWindow, lblmnuWindow);
}

void frmMain::lblmnuHelp_Click() {
    PopupBelow(Forms::touch<frmTemp>().mnuHelp, lblmnuHelp);
}

// ---- Caption areas ------------------------------------------------------------------------

void frmMain::PrepareSysMenu() {
    frmTemp& temp = Forms::touch<frmTemp>();
    const bool minimised = isMinimized();
    temp.popRestore->setEnabled(minimised);
    temp.popMinimize->setEnabled(!minimised);
    temp.mnuSysMenu->setDefaultAction(temp.popClose);
}

void frmMain::imgSysMenu_Click() {
    PrepareSysMenu();
    PopupBelow(Forms::touch<frmTemp>().mnuSysMenu, imgSysMenu);
}

void frmMain::imgSysMenu_DblClick() {
    unload();
}

void frmMain::imgMinimize_Click() {
    setWindowState(windowState() | Qt::WindowMinimized);
}

void frmMain::imgRollUp_Click() {
    RollUp();
}

void frmMain::imgClose_Click() {
    unload();
}

void frmMain::Form_DblClick() {
    RollUp();
}

// ---- Window messages ----------------------------------------------------------------------

void frmMain::Subclass1_WndProc(quint32 Msg, qintptr wParam, qintptr lParam, long* Result) {
    switch (Msg) {
        case Wm::MOVE:
        case Wm::SIZE:
            // A docked playlist window follows.
            MovePlaylistToMain();
            break;
        case Wm::WINDOWPOSCHANGING: {
            auto* pos = reinterpret_cast<WindowPos*>(lParam);
            const QScreen* screen =
                this->screen() ? this->screen() : QGuiApplication::primaryScreen();
            if (pos && screen) KeepInWorkArea(*pos, screen->availableGeometry());
            *Result = Subclass1.CallWndProc(Msg, wParam, lParam);
            break;
        }
        case Wm::NCRBUTTONDOWN:
            break;
        case Wm::NCRBUTTONUP:
            if (wParam == Wm::HTCAPTION) {
                PrepareSysMenu();
                Forms::touch<frmTemp>().mnuSysMenu->popup(QCursor::pos());
            }
            break;
        case Wm::INITMENUPOPUP:
            PrepareSysMenu();
            break;
        case Wm::DROPFILES:
            QApplication::setOverrideCursor(Qt::WaitCursor);
            DroppedFiles = Subclass1.droppedFiles();
            QApplication::restoreOverrideCursor();
            Process_DROPFILES();
            DroppedFiles.clear();
            break;
    }
}

void frmMain::KeepInWorkArea(WindowPos& pos, const QRect& area) {
    const int right = area.x() + area.width(), bottom = area.y() + area.height();
    if (pos.x < area.x()) pos.x = area.x();
    if (pos.x + pos.cx > right) pos.x = right - pos.cx;
    if (pos.y < area.y()) pos.y = area.y();
    if (pos.y + pos.cy > bottom) pos.y = bottom - pos.cy;
}

}  // namespace cantovel
