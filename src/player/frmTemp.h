#pragma once
// The hidden window that holds every menu of the main window, and the audio player `MP`.
// The skin's labels and buttons only forward to these menu items, so each command has
// one implementation however it is given.

#include <QAction>
#include <QMenu>
#include <array>
#include <memory>

#include "app/Form.h"
#include "platform/mediaplayer/MediaPlayer.h"
#include "player/MruList.h"
#include "tags/clsMP3.h"

namespace cantovel {

class frmTemp : public Form {
    Q_OBJECT
  public:
    frmTemp();
    ~frmTemp() override;
    // The window, loaded on first touch.
    static frmTemp& get();

    // The six menus the main window's labels open.
    QMenu* mnuFile;
    QMenu* mnuPlayback;
    QMenu* mnuConversions;
    QMenu* mnuOptions;
    QMenu* mnuWindow;
    QMenu* mnuHelp;

    // File
    QAction* mnuPlay;
    QAction* mnuPlayCurrent;
    QAction* mnuPlaylist;
    QAction* mnuMP3Info;
    QAction* mnuDelete;
    std::array<QAction*, 5> mnuFileMRU{};
    QAction* mnuClearCantovelMRU;
    QAction* mnuExit;
    // Playback
    QAction* mnuPause;
    QAction* mnuStop;
    QAction* mnuSeekPrev;
    QAction* mnuSeekNext;
    QAction* mnuRunPlaylist;
    QAction* mnuMute;
    // Conversions
    QAction* mnuCDtoWAV;
    QAction* mnuCDtoMP3;
    QAction* mnuWAVtoMP3;
    QAction* mnuMP3toWAV;
    QAction* mnuWAVBatch;
    // Options
    QAction* mnuPreferences;
    QAction* mnuAssociate;
    QMenu* mnuMMProperties;
    QAction* mnuMMAllProperties;
    QAction* mnuMMAudioProperties;
    QAction* mnuMMVideoProperties;
    QAction* mnuMMMIDIProperties;
    QAction* mnuMMCDProperties;
    QAction* mnuStartSS;
    // Window
    QAction* mnuCDDB;
    QAction* mnuAdvCDPlayer;
    QAction* mnuAdvVideoCDPlayer;
    QAction* mnuRollup;
    QAction* mnuMinTray;
    // Help
    QAction* mnuHelpFile;
    QAction* mnuMailBrightfen;
    QAction* mnuVisitBrightfen;
    QMenu* mnuSites;
    QAction* mnuDisclaimer;
    QAction* mnuAbout;

    // The main window's system menu.
    QMenu* mnuSysMenu;
    QAction* popRestore;
    QAction* popMinimize;
    QAction* popClose;

    // The video pop-up of the video player.
    QMenu* popVideo;
    QAction* popVidPlay;
    QAction* popVidPlayCurrent;
    QAction* popVidPause;
    QMenu* popZoom;

    // ---- Players and recent files ----
    // The hidden audio player; null when no player is provided.
    std::unique_ptr<MediaPlayer> MP;
    // The recently used media files, set up by the main window's load; may be null.
    std::unique_ptr<MruList> MRU;
    // The tag reader of "MP3 File Information", kept for the window's life.
    clsMP3 MP3;

    // ---- Window commands (player/frmTemp_commands.cpp) --------------------------------
    // The rows of "Recommended Sites...".
    std::array<QAction*, 4> mnuSite{};
    void mnuRollup_Click();
    void mnuMute_Click();
    void mnuPreferences_Click();
    void mnuMMProperties_Click(int Page);
    void mnuStartSS_Click();
    void mnuHelpFile_Click();
    void mnuMailBrightfen_Click();
    void mnuVisitBrightfen_Click();
    void mnuSite_Click(int Index);
    void mnuAbout_Click();
    void mnuDisclaimer_Click();
    void mnuExit_Click();
    void mnuClearCantovelMRU_Click();
    void mnuMP3Info_Click();
    void popRestore_Click();
    void popMinimize_Click();
    void popClose_Click();

    // ---- Commands that open the other subsystems' windows; each is defined in the
    // folder of the window it opens ----
    void mnuPlaylist_Click();          // playlist/
    void mnuCDDB_Click();              // cd/ (CDDB access player)
    void mnuAdvCDPlayer_Click();       // cd/ (Audio CD control panel)
    void mnuCDtoWAV_Click();           // convert/ (CD to WAV)
    void mnuCDtoMP3_Click();           // convert/ (CD to MP3)
    void mnuWAVtoMP3_Click();          // convert/ (file conversions)
    void mnuMP3toWAV_Click();          // convert/ (file conversions)
    void mnuWAVBatch_Click();          // convert/ (file conversions)
    void mnuAdvVideoCDPlayer_Click();  // video/
    void mnuAssociate_Click();         // shell/
    void mnuMinTray_Click();           // shell/

  public slots:
    // ---- Transport menu handlers: they forward to the main window ----
    void mnuPlay_Click();
    // A user stop: no loop follows it.
    void mnuStop_Click();
    void mnuPause_Click();
    void mnuPlayCurrent_Click();
    void mnuRunPlaylist_Click();
    void mnuDelete_Click();
    void mnuFileMRU_Click(int index);
    // The next and previous entry of a running queue, or track of a CD.
    void mnuSeekNext_Click();
    void mnuSeekPrev_Click();

    // ---- MP's events ----
    void MP_OpenStateChange(int oldState, int newState);
    void MP_PlayStateChange(int oldState, int newState);

  private:
    void wireTransport();
    void seek(int step);

    void connectWindowCommands();
};

}  // namespace cantovel
