#pragma once
// "Convert CD to MP3": selected tracks of an audio CD turned into MP3 files, one track at
// a time: the extractor writes the track to a temporary WAV, the encoder makes the MP3 of
// it, and the temporary file goes. The window also plays MP3 files and CD tracks.

#include <QString>
#include <memory>

#include "app/Form.h"
#include "platform/cdreader/CDReader.h"
#include "platform/mediaplayer/MediaPlayer.h"
#include "platform/mp3encoder/Mp3Encoder.h"
#include "platform/trackextractor/TrackExtractor.h"

class QAction;
class QComboBox;
class QFileSystemModel;
class QGroupBox;
class QLineEdit;
class QListWidget;
class QMenu;
class QToolBar;
class QTreeView;

namespace cantovel {

class BitrateMenu;
class ProgressShape;

class frmCDtoMP3 : public Form {
    Q_OBJECT
  public:
    frmCDtoMP3();
    ~frmCDtoMP3() override;

    // ---- State ----
    bool StopRequested = false;
    bool Encoding = false;
    bool TrackDone = false;
    int TrackTotal = 0;
    int TrackNumber = 0;
    double FullWidth = 0;  // twips
    QString OutputName;
    QString TempWav;
    QString OutputMp3;
    // The converting loop is running.
    bool Converting = false;
    // A track of the run could not be read, or its file written: the run ends and says so.
    bool RunFailed = false;

    // ---- Controls ----
    QGroupBox* Frame1;   // "CD Tracks"
    QGroupBox* Frame2;   // "Audio CD Drives"
    QGroupBox* Frame3;   // output folder and base name
    QGroupBox* Frame4;   // "Current Track"
    QGroupBox* Frame5;   // "All Tracks"
    QListWidget* List2;  // the drives
    QLineEdit* Text1;    // the selected drive's name
    QListWidget* List1;  // the tracks, multi-select
    QComboBox* Drive1;   // the output folder's file system
    QTreeView* Dir1;     // the output folder
    QLineEdit* Text2;    // the base name
    ProgressShape* Shape1;
    ProgressShape* Shape2;
    QToolBar* Toolbar1;  // Convert, Play, Pause, Exit

    QMenu* mnuFile;
    QAction* mnuConvert;
    QAction* mnuPlay;
    QAction* mnuPause;
    QAction* mnuMute;
    QAction* mnuExit;
    QMenu* mnuCDControls;
    QAction* mnuPlayTrack;
    QAction* mnuPauseCD;
    QAction* mnuSeekNext;
    QAction* mnuSeekPrev;
    QAction* mnuEject;
    QMenu* mnuSettings;
    BitrateMenu* Bitrates;  // "&Bitrate", mnuBitrate 0 to 3
    QAction* mnuDownMix;

    // ---- Components; each null when none is provided ----
    std::unique_ptr<TrackExtractor> ACD1;
    std::unique_ptr<Mp3Encoder> Mp3Enc1;
    std::unique_ptr<cantovel::CDReader> CDReader;
    std::unique_ptr<MediaPlayer> ActiveMovie1;

    // The output folder Dir1 shows.
    QString Dir1Path() const { return dir1Path_; }
    void setDir1Path(const QString& path);

    // Free kilobytes of the file system holding a path; tests put their own figure in.
    static double (*FreeKilobytes)(const QString& path);
    // The temporary files' folder chosen in the General Settings.
    static QString TemporaryFilesLocation();

    void Form_Load();
    void List2_Click();
    void mnuConvert_Click();
    void mnuFile_Opening();
    void Drive1_Change();
    void List1_MouseDown();
    void List1_MouseUp();
    void Toolbar1_ButtonClick(const QString& key);

    void ACD1_ExtractBegin();
    void ACD1_ExtractProgress(qint32 value);
    void ACD1_ExtractDone();
    // Tells the user what failed and ends the run.
    void reportFailure(const QString& text);
    void Mp3Enc1_EncodeProgress(qint32 value);
    void Mp3Enc1_EncodeDone();

    // ---- Play controls (frmCDtoMP3_play.cpp) ----
    bool CDPlaying = false;
    int SeekTrack = 0;
    quint32 ResumePosition = 0;
    long SavedVolume = 0;
    void mnuPlay_Click();
    void mnuPause_Click();
    void mnuMute_Click();
    void mnuPlayTrack_Click();
    void mnuPauseCD_Click();
    void mnuSeekNext_Click();
    void mnuSeekPrev_Click();
    void mnuEject_Click();
    void ActiveMovie1_PlayStateChange(int oldState, int newState);

  protected:
    bool queryUnload(UnloadMode mode) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void showEvent(QShowEvent* event) override;
    bool unloadEvent() override;

  private:
    void buildWindow();
    void buildMenus();
    void connectComponents();
    void askForTemporarySpace();
    void endOfRun();
    void seekBy(int step);
    void showDir1Path();

    QString dir1Path_;
    QFileSystemModel* dirModel_ = nullptr;
    int extracting_ = 0;  // the disc's number of the track in extraction
};

}  // namespace cantovel
