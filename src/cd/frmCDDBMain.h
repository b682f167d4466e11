#pragma once
// "Cantovel - CDDB Access Player": plays an audio CD through CdBase's device and looks the
// disc up on a CDDB server, showing the record, the traffic and the running disc time.
// Nothing here is saved: server, port and log last as long as the window.

#include <QAction>
#include <QMenu>
#include <functional>

#include "app/Form.h"
#include "cd/CdBase.h"
#include "platform/clock/Timer.h"

class QLineEdit;
class QMenuBar;
class QTreeWidget;
class QLabel;
class QGridLayout;

namespace cantovel {

class TrafficLog;

class frmCDDBMain : public Form {
    Q_OBJECT
  public:
    frmCDDBMain();
    ~frmCDDBMain() override;

    CdBase CdBase1;

    QTreeWidget* lvwSongList;
    QLineEdit *txtRevision, *txtPlayOrder, *txtExtd, *txtCdTitle, *txtArtist, *txtTitle,
        *txtCategory;
    TrafficLog* Text2;
    QLabel* lblSongList;
    Timer Timer1{250};

    QMenuBar* menuBar;
    QMenu *mnuCddb, *SettingsMenu, *LogInfoMenu, *IDInfoMenu, *mnuCd;
    QAction *mnuAccessCddb, *mnuQueryString, *mnuSites, *mnumotd, *mnuLog, *mnuClearLog, *mnudiscId,
        *mnuMSidCalc, *mnuExit;
    QAction *mnuPlay, *mnuNext, *mnuPrev, *mnuPause, *mnuStop, *mnuEject, *mnuOpen, *mnuClose,
        *mnuGetCurrentTrack, *mnuSetCurrentTrack, *mnuPlayTrack;

    // The contact address the greeting carries.
    static const QString ContactEmail;
    // Asks for a line of text (prompt, title, default); the empty text when cancelled.
    // Tests answer in its place.
    static std::function<QString(const QString&, const QString&, const QString&)> InputBox;

    void Form_Load();
    void Timer1_Timer();
    void RefreshDisplay();
    void mnuAccessCddb_Click();
    void mnuQueryString_Click();
    void mnuSites_Click();
    void mnumotd_Click();
    void mnuClearLog_Click();
    void mnudiscId_Click();
    void mnuMSidCalc_Click();
    void mnuOpen_Click();
    void mnuClose_Click();
    void mnuGetCurrentTrack_Click();
    void mnuSetCurrentTrack_Click();
    void mnuPlayTrack_Click();
    void lvwSongList_DblClick();
    void CdBase1_DataSent(const QString& text);

  protected:
    bool unloadEvent() override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    QLineEdit* addBox(QGridLayout* grid, int row, int column, const QString& label);
    void showModal(Form* window);
};

}  // namespace cantovel
