#pragma once
// "Cantovel - Video CD Player": a small standalone window whose whole player is one MCI
// control and its row of buttons. It takes no part in the main window's play.

#include "app/Form.h"

class QAction;
class QMenu;
class QMenuBar;

namespace cantovel {

class MMControl;

class frmVideoCDPlayer : public Form {
    Q_OBJECT
  public:
    frmVideoCDPlayer();
    ~frmVideoCDPlayer() override;

    static constexpr const char* Caption = "Cantovel - Video CD Player";

    QMenuBar* MenuBar = nullptr;
    QMenu* FileMenu = nullptr;
    QAction* ExitMenu = nullptr;
    MMControl* MMControl1 = nullptr;

    void Form_Load();
    void ExitMenu_Click();

  protected:
    bool unloadEvent() override;
    void keyPressEvent(QKeyEvent* event) override;
};

}  // namespace cantovel
