#pragma once
// The main window: a captionless 300 x 175 skinned face that plays one medium at a time.
// It owns the playback state and lives from start to exit. Its implementation is split by
// concern across the subsystems' folders (start-up and closing in app/, the session in
// player/, the face in skin/).

#include <QStringList>
#include <array>
#include <memory>

#include "app/Form.h"
#include "platform/clock/Timer.h"
#include "platform/pictureclip/PictureClip.h"
#include "player/player_state.h"
#include "shell/COSInfo.h"
#include "shell/Subclass.h"
#include "skin/CCaptionlessWindowMover.h"
#include "skin/SkinControl.h"
#include "skin/SkinLabel.h"
#include "tags/CCRC32.h"

class QMenu;

namespace cantovel {

class CDReader;
class MediaPlayer;

class frmMain : public Form, public PlayerState {
    Q_OBJECT
  public:
    frmMain();
    ~frmMain() override;

    // The loaded main window, or null.
    static frmMain* instance();

    // The start-up of the application, in its fixed order. `commandLine` is the one path
    // the program was started with (quotes allowed), or empty.
    void Form_Load(const QString& commandLine);
    // True from the creation of the window until the last step of its load.
    bool StillLoading = true;

    // The list of record: full paths of the loaded media or playlist entries.
    QStringList List1;

    // Kept for the window's whole life.
    std::unique_ptr<COSInfo> OSInfo;
    std::unique_ptr<CCRC32> CRCCheck;
    // The window-message hook, subscribed at load.
    Subclass Subclass1{this};

    // Timers; all start disabled.
    Timer Timer1{500};
    Timer Timer2{125};
    Timer Timer3{100};
    Timer CDR_Timer{1000};
    Timer tmrVolume{500};

    // The eighteen digit places: track time 0-5, track length 6-11, the player's
    // volume 12-14, the master volume 15-17.
    std::array<SkinControl, 18> imgTime;

    // ---- Face and skin (skin/frmMain_display.cpp, skin/frmMain_skin.cpp) -------------
    // The window's own picture: the whole face, or the rolled-up one.
    QPixmap Picture;
    // Strips: the digits 0-9, the eight buttons' pressed faces, the four volume buttons'.
    PictureClip clpDigits, clpButtons, clpVolumeButtons;
    // "Seek Previous", "Play", "Pause", "Stop", "Seek Next", "Open File", "Mute", "Help".
    std::array<SkinControl, 8> imgButton;
    // Increase player, increase master, decrease player, decrease master.
    std::array<SkinControl, 4> imgVolumeButton;
    SkinControl imgEQ, imgBalance;
    SkinControl imgSysMenu, imgMinimize, imgRollUp, imgClose;
    SkinControl lblmnuFile, lblmnuPlayBack, lblmnuConversions, lblmnuOptions, lblmnuWindow,
        lblmnuHelp;
    // Invisible holders: the full face while rolled up, and the rolled-up face.
    SkinControl imgTemp, imgBack;
    // The title (0) and its three shadows.
    std::array<SkinLabel, 4> lblTitle;
    CCaptionlessWindowMover Mover;

    // Applies a skin folder (empty: the built-in skin). A "/" it adds to the path reaches
    // the caller's string.
    void LoadSkin(QString& SkinPath);
    void LoadSkin(const QString& SkinPath);
    // Gives a picture file to a control or strip; false (and nothing changed) when the
    // file cannot be read as a picture.
    bool LoadPic(SkinControl& Target, const QString& Path);
    bool LoadPic(PictureClip& Target, const QString& Path);

    void RollUp();
    // A three-digit read-out: FirstOffset 0 is the player's volume, 3 the master volume.
    void ShowNumberField(int FirstOffset, const QString& Text);
    // The place the cells First .. First + Count - 1 of the digit fields cover.
    QRect cellsRect(int First, int Count) const;
    // Paints the two three-digit volume read-outs.
    void PaintVolumes();

    // Mouse events of the windowless controls. Button: 1 left, 2 right, 4 middle; Shift:
    // 1 shift, 2 ctrl, 4 alt; X and Y in pixels from the control's corner.
    void imgButton_MouseDown(int Index, int Button, int Shift, int X, int Y);
    void imgButton_MouseUp(int Index, int Button, int Shift, int X, int Y);
    void imgBalance_MouseMove(int Button, int Shift, int X, int Y);

    // ---- Display interface: the face's painting, which the skin owns ----
    // The position thumb; its travel runs from left 16 to 268 minus its width.
    SkinControl imgPlayProgress{QRect(16, 119, 20, 8), QString(), QPixmap()};
    // Sets the four title labels; nothing when the first already shows the text.
    void Title(const QString& Text);
    // What the title shows.
    QString TitleText() const;
    // The level picture, cut to Level x 1.61 pixels; 0 hides it. Display only.
    void EQVolume(int Level);
    // Paints a six-digit clock field: 0 elapsed, 6 length.
    void ShowClockField(int FirstCell, const QString& Text);
    // The clock text of a time: hours, minutes and seconds of two digits each, read as
    // one number, so leading zeros go.
    static QString ClockText(double Seconds);
    // Places the thumb for a position of a length (both in seconds).
    void ThumbFromTime(double Position, double Length);
    // The time the thumb stands for, in whole seconds of a length.
    long TimeFromThumb(double Length) const;
    // Places the thumb from a position and paints the elapsed digits from the thumb.
    void ShowPosition(double Position, double Length);
    // A mouse move over the thumb (Button 1 left, 0 none; X from the thumb's corner):
    // with no button X is kept as the anchor, with the left one the thumb follows, then
    // SeekFromThumb seeks.
    void imgPlayProgress_MouseMove(int Button, int Shift, int X, int Y);
    int progressAnchor_ = 0;

    // ---- Volume and balance (player/frmMain_volume.cpp) --------------------------------
    void VolumeStep(int Index);
    void imgVolumeButton_MouseDown(int Index, int Button, int Shift, int X, int Y);
    void imgVolumeButton_MouseUp(int Index, int Button, int Shift, int X, int Y);
    void tmrVolume_Timer();
    // The index of the held volume button.
    int tmrVolumeTag = 0;
    // Sets the player's volume on every player control that is there.
    void ApplyPlayerVolume();
    void mnuMute();
    // The balance thumb from a value -1000..1000, and the value from the thumb.
    void SetBalance(int Value);
    int GetBalance() const;
    // Gives the balance of the thumb to the audio player.
    void ApplyBalance();

    // ---- Keys and window commands (player/frmMain_keys.cpp) ----------------------------
    void Form_KeyDown(int KeyCode, int Shift);
    // Opens one of frmTemp's menus below a menu word.
    void PopupBelow(QMenu* menu, const SkinControl& label);
    void lblmnuFile_Click();
    void lblmnuPlayBack_Click();
    void lblmnuConversions_Click();
    void lblmnuOptions_Click();
    void lblmnuWindow_Click();
    void lblmnuHelp_Click();
    // Readies the system menu: Restore only for a minimised window, Close the default.
    void PrepareSysMenu();
    void imgSysMenu_Click();
    void imgSysMenu_DblClick();
    void imgMinimize_Click();
    void imgRollUp_Click();
    void imgClose_Click();
    void Form_DblClick();
    // The hook's messages: a docked playlist follows moves, the window stays inside the
    // work area, the caption's right click opens the system menu, drops are opened.
    void Subclass1_WndProc(quint32 Msg, qintptr wParam, qintptr lParam, long* Result);
    // Moves a proposed window place inside an area on all four sides.
    static void KeepInWorkArea(WindowPos& pos, const QRect& area);

    // Opens the one path given on the command line, if it names an existing file.
    void OpenCommandLine(const QString& path);

    // ---- Opening media: the five ways a file comes in ----
    // The open-or-stop command: frmTemp's mnuPlay reading "&Open..." opens, else stops.
    void mnuPlay();
    // Opens the recently used entry shown on frmTemp's mnuFileMRU(index).
    void mnuMRU(int index);
    // Opens the paths of the last drop, which the window's drop handling leaves in
    // DroppedFiles, from the first to the last.
    void Process_DROPFILES();
    QStringList DroppedFiles;
    // Opens a path handed over by a later start of the program (the path may not exist:
    // the player then refuses it).
    void OpenHandedOver(const QString& path);

    // ---- Playback session ----
    // A player has its file open, `seconds` long.
    void OpenComplete(long seconds);
    // Puts the window back to idle; CurrentFile is kept.
    void PlayStopped();
    // Plays PlayQueue(PlayIndex).
    void Play_Start();
    // The current queue entry has ended: on to the next.
    void Play_Done();
    // A player's open-state event, the same for frmTemp's MP and the queue's AM:
    // ignored while the player is closed; else the thumb goes home, OpenComplete gets
    // the length and Timer3 runs.
    void MediaOpened(MediaPlayer& player);
    // The queue player's play-state event: a change from playing to stopped is the end
    // of the entry.
    void AM_PlayStateChange(int oldState, int newState);
    // Titles the queue entry PlayQueue(PlayIndex) by `Show Extension`; an index past the
    // queue leaves the title of the file last parsed.
    void ShowEntryTitle();
    // Plays CurrentTrack (an index from 0) of the disc and reports its length.
    void PlayDiscTrack(CDReader& reader);
    // "Audio Track #" and the number of CurrentTrack counted from 1.
    void ShowTrackTitle();
    // Writes the thumb's left and repaints it.
    void MoveThumb(int left);
    // Whether a player control is playing (play state 2).
    bool AnyPlayerPlaying() const;

    // ---- Transport ----
    // The eight skin buttons: Seek Previous, Play, Pause, Stop, Seek Next, Open File,
    // Mute, Help.
    void imgButton_Click(int index);
    void mnuStop();
    void mnuPause();
    void mnuPlayCurrent();
    void mnuRunPlaylist();
    void mnuDelete();
    // After a drag moved the thumb: seeks the player to the time the thumb stands for.
    void SeekFromThumb();
    // Seeks the player of the file in hand (the queue's while one runs) to a time.
    void SeekTo(double seconds);
    // Seconds into the file, as its player reports them.
    double playerPosition();

  public slots:
    // A command handed over by a later start of the program: "[Restore App]" or a path.
    void Form_LinkExecute(const QString& command);

  protected:
    bool queryUnload(UnloadMode mode) override;
    bool unloadEvent() override;

    // ---- Face: painting and the mouse of the windowless controls ----------------------
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    // ---- Opening media ----
    // Which way a file came in; the messages differ by it.
    enum class OpenEntry { Dialog, CommandLine, Dde, Mru, Drop, PlayCurrent };
    void clearLists();
    void addToLists(const QString& path);
    void stopAllPlayers();
    void addToRecentFiles(const QString& path);
    void refuseFile(const QString& path, OpenEntry entry);
    // "An error occurred attempting to play the current file. ..."
    static QString playErrorText();
    void openAudio(const QString& path, OpenEntry entry);
    void openVideo(const QString& path, OpenEntry entry);
    void openVivo(const QString& path);
    void openAudioCD(const QString& path);
    void openPlaylist(const QString& path);
    // The ".asf" question; Yes plays it as audio, No as video with this window hidden.
    void openAsf(const QString& path, OpenEntry entry);
    // Starts a queue over List1: stop, PlayIndex, PlayQueue, seek menus, Play_Start, title.
    void startQueue();
    // The title of a path by `Show Extension`: the file name, or the base name.
    void showFileTitle(const QString& path);

    // ---- Playback session ----
    bool wireSession();
    void playStartOnce();
    // Loads CurrentFile into the queue's player and starts it; shows its window for video.
    void playInQueue(bool showWindow);
    // Moves PlayIndex on as the end of an entry does; false when that ends the run.
    bool nextEntry();
    void quietOtherPlayers(MediaPlayer& opened);
    // Opens the CD reader and waits up to 15 seconds for a disc; false, with its
    // message, when there is none or its directory cannot be read.
    bool waitForDisc(CDReader& reader);
    void Timer1_Timer();
    void Timer2_Timer();
    void Timer3_Timer();
    void CDR_Timer_Timer();

    // ---- Transport ----
    bool thumbAtRightEnd() const;
    void rewindAtRightEnd();
    // False when the Trash refused the file, which then stays loaded.
    bool deleteCurrentFile();

    // ---- Private session state ----
    qint64 cdWaitStart_ = 0;            // when the last CD wait began
    bool displayBusy_ = false;          // Timer3's tick is running
    bool calculatingPosition_ = false;  // Timer1's tick is running
    quint32 cdPausePosition_ = 0;       // the reader's position at pause, packed
    bool deleteDeclined_ = false;       // the delete question was answered No
    // A queue entry that cannot be played is passed over through Seek Next, which
    // starts the next one; those starts run one after another, not nested.
    bool skippingEntry_ = false;
    bool restartPending_ = false;
    bool entryFailed_ = false;
    bool inQueueGap_ = false;
    // Connects the timers; runs as the last member is made.
    bool sessionWired_ = wireSession();

    // ---- Face ---------------------------------------------------------------------------
    // A place on the face that takes the mouse.
    struct Area {
        enum Kind {
            None,
            Button,
            VolumeButton,
            PlayProgress,
            Balance,
            SysMenu,
            Minimize,
            RollUpBox,
            Close,
            MenuWord,
            Digit,
            Level,
            TitleLabel
        };
        Kind kind = None;
        int index = 0;
    };
    Area areaAt(const QPoint& pt) const;
    QRect areaRect(const Area& area) const;
    QString areaToolTip(const Area& area) const;
    void areaMouseDown(const Area& area, int button, int shift, const QPoint& pt);
    void areaMouseMove(const Area& area, int buttons, int shift, const QPoint& pt);
    void areaMouseUp(const Area& area, int button, int shift, const QPoint& pt);
    void areaClick(const Area& area);
    void areaDblClick(const Area& area);
    void layOutFace();
    bool applySkin(QString& SkinPath);

    // The text last painted in each clock field.
    std::array<QString, 2> clockCache_;
    // The pointer's X over the balance thumb while no button is held.
    int balanceAnchor_ = 0;
    // The area that took the last press, until its release.
    Area pressed_;
    bool pressActive_ = false;
    bool dblClicked_ = false;
    bool faceLaidOut_ = false;
};

}  // namespace cantovel
