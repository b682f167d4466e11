#pragma once
// "Cantovel Video Play": the picture window of a running queue. Every queue entry, sound
// or film, plays in its player AM; the window shows only for films. Closing it ends the
// queue.

#include <QPointer>
#include <memory>

#include "app/Form.h"
#include "platform/clock/Timer.h"
#include "platform/mediaplayer/MediaPlayer.h"
#include "player/QueueView.h"

class QAction;
class QMenu;
class QMenuBar;

namespace cantovel {

class frmVideoPlaylistView : public Form, public QueueView {
    Q_OBJECT
  public:
    frmVideoPlaylistView();
    ~frmVideoPlaylistView() override;

    MediaPlayer* AM() override { return am_.get(); }
    // The widget the picture shows in; hidden until a film is open.
    QWidget* AMWidget() const { return picture_; }

    Timer Timer1{100};

    // The pop-up of the picture.
    QMenu* MainMenu;
    QAction *popRestart, *popStop, *popPause, *popSeekF, *popSeekR, *popFullScreen, *OntopMenu;
    // The window's menu.
    QMenuBar* menuBar;
    QMenu* mnuFile;
    QAction *mnuPlay, *mnuPause, *mnuSeekF, *mnuSeekR, *mnuFullScreen, *mnuExit;

    void AM_OpenStateChange(int oldState, int newState);
    void Form_Resize();
    void Timer1_Timer();
    // Sets the pop-up's entries from the play state; the right button then opens it.
    void AM_MouseDown(int Button);
    void mnuFile_Click();

    void popRestart_Click();
    void popStop_Click();
    void popPause_Click();
    void OntopMenu_Click();
    void mnuPlay_Click();
    void mnuPause_Click();
    void mnuSeek(int seconds);
    void mnuFullScreen_Click();

  protected:
    bool queryUnload(UnloadMode mode) override;
    bool unloadEvent() override;
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void Form_Load();
    QRect innerArea() const;

    std::unique_ptr<MediaPlayer> am_;
    QWidget* picture_;
};

}  // namespace cantovel
