#pragma once
// "Cantovel - Video Player": the single-file video window. The main window hands it a film
// and drives its player `MP`; the window shows the picture, keeps the main window's time
// display going while the film plays, and has its own File menu to open other films
// without passing through the main window.
//
// Implementation: frmVideoPlayer.cpp (load, timers, sizing, unload) and
// frmVideoPlayer_menu.cpp (the File menu and its commands).

#include <QString>
#include <array>
#include <memory>

#include "app/Form.h"
#include "platform/clock/Timer.h"
#include "platform/mediaplayer/MediaPlayer.h"
#include "player/VideoPlayerWindow.h"
#include "shell/CMRU.h"

class QAction;
class QMenu;
class QMenuBar;

namespace cantovel {

class frmVideoPlayer : public Form, public VideoPlayerWindow {
    Q_OBJECT
  public:
    frmVideoPlayer();
    ~frmVideoPlayer() override;

    static constexpr const char* Caption = "Cantovel - Video Player";
    // The smallest normal size, in twips each way.
    static constexpr int MinimumTwips = 2000;

    void SetVideoFile(const QString& path) override;
    MediaPlayer* MP() override { return mp_.get(); }
    // The file the main window last handed over.
    QString VideoFile;

    // The window's inside, below the menu bar, and the picture of MP within it.
    QWidget* Inside = nullptr;
    QWidget* MPView = nullptr;

    QMenuBar* MenuBar = nullptr;
    QMenu* mnuFile = nullptr;
    QAction* mnuOpen = nullptr;
    QAction* mnuPlay = nullptr;
    QAction* mnuPause = nullptr;
    QAction* mnuSeekF = nullptr;
    QAction* mnuSeekR = nullptr;
    QAction* mnuFullScreen = nullptr;
    QAction* mnuExit = nullptr;
    // Row 0 is the separator above the recent films, rows 1 to 4 the films.
    std::array<QAction*, 5> mnuFileMRU{};
    std::unique_ptr<CMRU> MRU;

    // Timer1 keeps the main display in step with the film; Timer2 waits for it to start.
    Timer Timer1{100};
    Timer Timer2{300};

    void Form_Load();
    void Form_Resize();
    void Timer1_Timer();
    void Timer2_Timer();
    void MP_PlayStateChange(int oldState, int newState);

    // The File menu's opening: the entries follow the play state.
    void mnuFile_Click();
    void mnuOpen_Click();
    void mnuPlay_Click();
    void mnuPause_Click();
    void mnuSeekF_Click();
    void mnuSeekR_Click();
    void mnuFullScreen_Click();
    void mnuExit_Click();
    void mnuFileMRU_Click(int index);

    // Where the recent films are kept, below HKEY_LOCAL_MACHINE.
    static QString MruKey();

  protected:
    bool unloadEvent() override;
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void buildMenu();
    // Plays a film chosen here, not through the main window, and titles it there.
    void playOwnFilm(const QString& path);
    void seekBy(int seconds);

    std::unique_ptr<MediaPlayer> mp_;
};

}  // namespace cantovel
