#pragma once
// "Cantovel - Convert CD Track to WAV": lists the tracks of the disc in a chosen drive,
// converts any selection of them to WAV files through its CD reader (the run itself is
// frmCopyDlg's), and plays a track of the disc or a WAV file to check a result.

#include <QMenu>
#include <QPointer>
#include <memory>

#include "cd/CDWindow.h"
#include "platform/mediaplayer/MediaPlayer.h"

class QProgressBar;

namespace cantovel {

class frmCopyDlg;

class frmCDtoWAV : public CDWindow {
    Q_OBJECT
  public:
    frmCDtoWAV();
    ~frmCDtoWAV() override;

    VBool WavPlaying = VFalse;
    // The volume a mute put aside.
    long MuteVolume = 0;

    QProgressBar* Progressbar1;
    // Plays the WAV files; null when no player is provided.
    std::unique_ptr<MediaPlayer> ActiveMovie1;
    cantovel::Timer Timer1{500};

    QMenu* DAC1;
    QAction* ConfigDrive;
    QAction* SelectWaveformat1;
    QAction* SelectAll1;
    QAction* InvertSelection1;
    QAction* miExit;
    QMenu* Actions1;
    QAction* CopyTracks1;
    QAction* PlayMenu;
    QAction* PauseMenu;
    QMenu* CDControls;

    // The progress dialog of the conversion running now, or null.
    QPointer<frmCopyDlg> CopyDlg;

    void Form_Load();
    void DevCombo_Click() override;
    // Reading the directory: the list, then the conversion command by its selection.
    void FillTrackList() override;
    void Timer_Timer();
    void CopyTracks1_Click();
    void PlayMenu_Click();
    void PauseMenu_Click();
    void ActiveMovie1_StateChange(int oldState, int newState);
    void Timer1_Timer();
    void PlayCDMenu_Click();
    void Timer3_Timer();
    void SeekNextMenu_Click();
    void SeekPrevMenu_Click();
    void MuteMenu_Click();
    void ConfigDrive_Click();
    void SelectWaveformat1_Click();
    // A toolbar button, by its key: "Convert", "Play", "Pause", "Exit".
    void Toolbar1_ButtonClick(const QString& key) override;

    // The reader's events.
    void CDReader_CopyError();
    void CDReader_CopyStarted();
    void CDReader_CopyFinished();
    void CDReader_CopyWriteFailed();

  protected:
    bool unloadEvent() override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    // Shows a dialog owned by this window and returns once it is hidden or gone; events,
    // timers and the reader's reports go on meanwhile.
    void showModal(Form* dialog);
    void seekBy(int step);
    // Plays the track at zero-based `index` whole, with the bar following it.
    void playTrackRange(int index);
};

}  // namespace cantovel
