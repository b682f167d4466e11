#pragma once
// "Sys Tray Interface": the hidden window that owns the tray icon and its menu while the
// main window is minimised to the tray.

#include <QAction>
#include <QMenu>

#include "app/Form.h"
#include "platform/clock/Timer.h"
#include "shell/cSysTray.h"

namespace cantovel {

class frmTrayIcon : public Form {
    Q_OBJECT
  public:
    frmTrayIcon();
    ~frmTrayIcon() override;

    cSysTray cSysTray1;

    QMenu* mnuPopup;
    QAction* mnuRestore;
    QMenu* mnuHelpMenu;
    QAction *mnuHelp, *mnuEmail, *mnuHomepage, *mnuAbout;
    QMenu* mnuConversions;
    QAction *mnuWAVBatch, *mnuCDtoWAV, *mnuCDtoMP3, *mnuWAVtoMP3, *mnuMP3toWAV;
    QAction* mnuPlaylist;
    QAction *popSeekNext, *popSeekPrev;
    QAction *mnuPause, *mnuPlayCur, *mnuPlayNew;
    QAction* mnuExit;

    // The notification area tells no pointer moves: the tip is renewed this often while
    // the icon is up, as a move over it would.
    Timer tmrTip{1000};

    void cSysTray1_MouseMove();
    void cSysTray1_MouseUp(int Button);
    void cSysTray1_MouseDblClick(int Button);
    // Readies the menu's rows from the player's state.
    void PrepareMenu();
    // Puts the icon up with the tip of the moment and hides the main window.
    void GoToTray();
    // Shows the main window again and takes the icon away.
    void mnuRestore_Click();

    // The tip for the player's file: the title alone, or the file's name before it.
    static QString TipFor(const QString& fileName);
};

}  // namespace cantovel
