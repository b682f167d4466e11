#pragma once
// "Copying Data...": the modal dialog that runs a CD to WAV conversion. It walks the
// tracks selected in its owner's list one after the other, has the owner's reader copy
// each, and shows the progress of the current track and of the entire process.
//
// The owner forwards its reader's events here (StartTimer, TrackFinished and the flags).

#include <QString>

#include "app/Form.h"
#include "app/Runtime.h"
#include "platform/clock/Timer.h"

class QLabel;
class QListWidget;
class QProgressBar;
class QPushButton;

namespace cantovel {

class CDReader;
class frmCDtoWAV;

class frmCopyDlg : public Form {
    Q_OBJECT
  public:
    explicit frmCopyDlg(frmCDtoWAV& owner);

    // Per run.
    VBool Aborted = VFalse;
    VBool CopyFailed = VFalse;
    qint32 CurrentTrack = -1;  // zero-based index of the track in work
    QString BaseName;          // the name chosen in the save dialog
    qint32 TrackStartTime = 0;
    qint32 LastTrackTime = 0;
    qint32 TotalTime = 0;
    qint32 TrackFrames = 0;
    qint32 TotalFrames = 0;
    qint32 TrackFramesDone = 0;
    qint32 TotalFramesDone = 0;

    // Row 1 the current track, row 2 the entire process.
    QProgressBar* Meter1;
    QProgressBar* Meter2;
    QLabel* lblPercent1;
    QLabel* lblSpeed1;
    QLabel* lblTime1;
    QLabel* lblRemaining1;
    QLabel* lblPercent2;
    QLabel* lblSpeed2;
    QLabel* lblTime2;
    QLabel* lblRemaining2;
    QListWidget* Messages;
    QPushButton* btnAbort;
    cantovel::Timer Timer{70};
    cantovel::Timer Timer2{100};

    void Form_Load();
    void Timer_Timer();
    void Timer2_Timer();
    void CopyTrack(qint32 index);
    // The next selected audio track after CurrentTrack, or CurrentTrack when there is none.
    void FindNextTrack(qint32& index);
    void StartTimer();
    void StopTimer();
    // The reader's CopyFinished: the end of a track.
    void TrackFinished();
    void btnAbort_Click();

    // The Windows rounding multiply-divide: a × b ÷ c rounded, -1 when c is 0 or the result
    // overflows.
    static qint32 MulDiv(qint32 a, qint32 b, qint32 c);

  protected:
    bool queryUnload(UnloadMode mode) override;
    bool unloadEvent() override;

  private:
    CDReader* reader() const;
    // One row's labels from its frames done, milliseconds spent and frames in all.
    static void showRow(QLabel* percent, QLabel* speed, QLabel* time, QLabel* remaining,
                        QProgressBar* meter, qint32 framesDone, qint32 ms, qint32 frames);
    void completeRow2();

    frmCDtoWAV& owner_;
};

}  // namespace cantovel
