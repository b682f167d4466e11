#pragma once
// What the windows that list and play a disc share (the Audio CD control panel and CD to
// WAV): their own CD reader, the drive list, the track list, the status bar with its disc,
// time and track panels, the status tick, and the commands that behave alike in both.

#include <QAction>
#include <QStyle>
#include <array>
#include <memory>

#include "app/Form.h"
#include "app/Runtime.h"
#include "platform/cdreader/CDReader.h"
#include "platform/clock/Timer.h"
#include "platform/msgbox/MsgBox.h"

class QComboBox;
class QLabel;
class QStatusBar;
class QToolBar;
class QVBoxLayout;

namespace cantovel {

class CDTrackListView;

class CDWindow : public Form {
    Q_OBJECT
  public:
    ~CDWindow() override;

    // Null when no reader is provided: the window then shows no drive.
    std::unique_ptr<cantovel::CDReader> CDReader;

    long TrackCountShown = -1;  // -1: nothing listed
    VBool CDPlaying = VFalse;
    quint32 ResumePosition = 0;
    // The track kept for resume and seek; the resume indexes the tracks with it as it
    // stands.
    long SeekTrack = 0;

    CDTrackListView* ListView;
    QComboBox* DevCombo;
    QStatusBar* StatusBar;
    std::array<QLabel*, 3> Panels{};  // disc state, time, track
    QToolBar* Toolbar1;
    QLabel* Label1;  // the status line
    cantovel::Timer Timer{500};
    cantovel::Timer Timer3{1000};

    QAction* PlayCDMenu = nullptr;
    QAction* PauseCDMenu = nullptr;
    QAction* SeekNextMenu = nullptr;
    QAction* SeekPrevMenu = nullptr;
    QAction* EjectMenu = nullptr;
    QAction* MuteMenu = nullptr;

    // The toolbar's button of that key.
    QAction* ToolbarButton(const QString& key) const;
    // Reads the disc into the track list.
    virtual void FillTrackList();
    void PauseCDMenu_Click();
    void EjectMenu_Click();

    static constexpr int kInformation = Mb::Information | Mb::SetForeground;
    static constexpr int kExclamation = Mb::Exclamation | Mb::SetForeground;
    static const QString kPlayTrack;   // "&Play Track"
    static const QString kStopCDPlay;  // "&Stop CD Play"
    static const QString kPauseCD;     // "Pa&use CD"

  protected:
    // Lays out toolbar, drive list, track list and status line; the window adds the rest
    // to `layout` and calls finishLayout() for the status bar.
    CDWindow(const QString& name, const QString& title);
    QVBoxLayout* layout() const { return layout_; }
    void finishLayout();
    QAction* addToolbarButton(const QString& key, const QString& tip, QStyle::StandardPixmap image);
    virtual void Toolbar1_ButtonClick(const QString& key) = 0;
    virtual void DevCombo_Click() = 0;

    // The key of the reader's settings.
    static QString dacKey();
    // Loads the reader's settings and lists the drives: false when there is none.
    bool listDrives();
    // Close, select the combo's drive, Open: the reader's error text, empty when it opened.
    QString openSelectedDrive();
    // The menus of the tick's step 2: as CDPlaying says.
    void showPlayState();
    // The tick's disc part: the panels, and the list following the disc's track count.
    // Without a disc the list is emptied; `forgetCount` also sets TrackCountShown to -1,
    // so that the same disc put back is listed again.
    void showDiscState(bool forgetCount);
    // Stops and releases the drive and saves the reader's settings.
    void releaseReader();

  private:
    QVBoxLayout* layout_;
};

}  // namespace cantovel
