#pragma once
// The hidden window that holds the playlist editor's menus and their check marks, and
// the list of recently used playlists.

#include <QAction>
#include <QMenu>
#include <array>

#include "app/Form.h"
#include "shell/CMRU.h"

namespace cantovel {

class frmTemp2 : public Form {
    Q_OBJECT
  public:
    frmTemp2();
    ~frmTemp2() override;
    // The window, loaded on first touch.
    static frmTemp2& get();

    // File
    QMenu* mnuFile;
    QAction* mnuNew;
    QAction* mnuLoad;
    QAction* mnuSave;
    QAction* mnuExit;
    std::array<QAction*, 5> mnuFileMRU{};
    // Edit
    QMenu* mnuEdit;
    QAction* mnuAdd;
    QAction* mnuRemove;
    QAction* mnuMoveUp;
    QAction* mnuMoveDown;
    QAction* mnuDeleteDupes;
    QAction* mnuDeselectAll;
    // Options
    QMenu* mnuOptions;
    QAction* mnuRandomPlay;
    QAction* mnuFullScreen;
    QAction* mnuLoopPlaylist;
    QMenu* mnuDockMain;
    // Below, above, left, right, a separator, none.
    std::array<QAction*, 6> mnuDockSub{};
    QAction* mnuConfirmSave;
    QAction* mnuOntop;
    // The list's pop-up.
    QMenu* mnuPopup;
    QAction *popNew, *popLoad, *popSave, *popAdd, *popRemove, *popMoveUp, *popMoveDown,
        *popDeselectAll, *popExit;
    // The window's system menu.
    QMenu* popSysMenu;
    QAction *popRestore, *popMove, *popMinimize, *popClose;

    // The recently used playlists.
    CMRU MRU;

    void mnuDeleteDupes_Click();
    void mnuRandomPlay_Click();
    void mnuFullScreen_Click();
    void mnuLoopPlaylist_Click();
    void mnuConfirmSave_Click();
    void mnuOntop_Click();
    void mnuDockSub_Click(int Index);
    void mnuFileMRU_Click(int Index);

  private:
    void wire();
};

}  // namespace cantovel
