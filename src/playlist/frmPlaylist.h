#pragma once
// The playlist editor: the second skinned window, 300 x 175 with no caption. Its list
// shows the names of the rows of frmMain.List1 and is changed together with it; frmTemp2
// holds its menus. It can be docked to any side of the main window. The implementation
// is split by concern: files, editing, playing a row, the window, docking, the skin.

#include <QPixmap>
#include <QStringList>
#include <array>

#include "app/Form.h"
#include "platform/pictureclip/PictureClip.h"
#include "player/PlaylistView.h"
#include "playlist/PlaylistListBox.h"
#include "shell/Subclass.h"
#include "skin/CCaptionlessWindowMover.h"
#include "skin/SkinControl.h"

class QMenu;

namespace cantovel {

class frmMain;

class frmPlaylist : public Form, public PlaylistView {
    Q_OBJECT
  public:
    // Loads the window and shows it.
    frmPlaylist();
    ~frmPlaylist() override;
    // The loaded window, or null.
    static frmPlaylist* instance();

    // ---- What the player sees ----
    void lstPlayListClear() override;
    void lstPlayListAddItem(const QString& fileName) override;
    int lstPlayListCount() const override;
    void RefreshPlaylist() override;

    // ---- Controls ----
    PlaylistListBox* lstPlayList;
    QPixmap Picture;
    PictureClip clpButtons;
    // "Add File(s)", "Remove File(s)", "Load Playlist", "Save Playlist", "Move Up",
    // "Move Down".
    std::array<SkinControl, 6> imgButton;
    SkinControl imgSysMenu, imgMinimize, imgClose;
    SkinControl lblmnuFile, lblmnuEdit, lblmnuOptions, lblmnuHelp;
    CCaptionlessWindowMover Mover;
    Subclass Subclass1{this};

    // ---- Files (playlist/frmPlaylist_files.cpp) ----
    void mnuLoad();
    void mnuSave();
    // Reads a playlist file and appends its rows to both lists; the number of rows read.
    int AppendPlaylist(const QString& path);
    // Appends one path to both lists.
    void AppendRow(const QString& path);
    // Appends paths to both lists at once.
    void AppendRows(const QStringList& paths);
    // Empties both lists.
    void ClearLists();
    // The private count field: the row count the last load, add or drop left.
    int RowCount() const { return rowCount_; }
    void setRowCount(int n) { rowCount_ = n; }

    // ---- Editing (playlist/frmPlaylist_edit.cpp) ----
    void mnuNew();
    void mnuAdd();
    void mnuRemove();
    void mnuMoveUp();
    void mnuMoveDown();
    void mnuDeselectAll();
    // Thins a list as the Delete Duplicates command does: each round compares a row with
    // itself first, so far more than duplicates go.
    void RemoveDupes(PlaylistListBox& List);
    void RemoveDupes(QStringList& List);
    // Adds the paths of the last drop, which the window's drop handling leaves in
    // DroppedFiles, in the order given.
    void Process_DROPFILES();
    QStringList DroppedFiles;

    // ---- Playing one row (playlist/frmPlaylist_play.cpp) ----
    void lstPlayList_DblClick();

    // ---- The window (playlist/frmPlaylist_window.cpp) ----
    // Sets the menus' enabled state from the selection.
    void lstPlayList_Click();
    void lstPlayList_MouseUp(int Button, int Shift, int X, int Y);
    void lstPlayList_MouseMove(int Button, int Shift, int X, int Y);
    void lblmnuFile_Click();
    void lblmnuEdit_Click();
    void lblmnuOptions_Click();
    void lblmnuHelp_Click();
    void imgButton_Click(int Index);
    void imgButton_MouseDown(int Index, int Button);
    void imgButton_MouseUp(int Index, int Button);
    void imgSysMenu_Click();
    void PrepareMenu();
    // True when the keys are one of the window's commands.
    bool Form_KeyDown(int KeyCode, int Shift);
    void Subclass1_WndProc(quint32 Msg, qintptr wParam, qintptr lParam, long* Result);

    // ---- The skin (skin/frmPlaylist_skin.cpp) ----
    // Applies a skin folder's [Playlist] section and pictures (empty: the built-in look).
    // A "/" added to the path reaches the caller's string.
    void LoadPlaylistSkin(QString& SkinPath);
    bool LoadPic(PictureClip& Target, const QString& Path);

  protected:
    bool queryUnload(UnloadMode mode) override;
    bool unloadEvent() override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void Form_Load();
    void layOut();
    // The guard of the editing commands; false, with its message, when the list is off.
    bool listAdjustable();
    void AddSelectedFiles(const QStringList& paths);
    void addDialogFile(const QString& path);
    void renewHorizontalExtent();
    void popupBelow(QMenu* menu, const SkinControl& label);
    void removeSelectedRows();
    void moveRow(bool down);

    int rowCount_ = 0;
    int extentWidth_ = 0;
    int pressedButton_ = -1;
    // The control a left press went to (0-5 buttons, 6 system menu, 7 minimise, 8 close,
    // 9-12 menu words), -1 the background, which carries the window.
    int pressedArea_ = -2;
    bool windowLoaded_ = false;
};

}  // namespace cantovel
