#pragma once
// "Cantovel - Audio CD Control Panel": lists the tracks of the disc in a chosen drive and
// plays them digitally through its own CD reader, with pause, seek, mute, eject and the
// master volume.

#include <QMenu>

#include "cd/CDWindow.h"

class QSlider;

namespace cantovel {

class frmCDPlayer : public CDWindow {
    Q_OBJECT
  public:
    frmCDPlayer();

    QSlider* Slider1;  // the master volume, 0 to 100
    QLabel* Label2;    // the slider's value

    QMenu* DAC1;
    QAction* miExit;

    void Form_Load();
    void DevCombo_Click() override;
    void Timer_Timer();
    void PlayCDMenu_Click();
    void SeekNextMenu_Click();
    void SeekPrevMenu_Click();
    void MuteMenu_Click();
    void Slider1_Change();
    // A toolbar button, by its key: "Play", "Stop", "Pause", "Mute", "Exit".
    void Toolbar1_ButtonClick(const QString& key) override;

  protected:
    bool unloadEvent() override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    void seekBy(int step);
};

}  // namespace cantovel
