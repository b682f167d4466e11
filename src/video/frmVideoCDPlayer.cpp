#include "video/frmVideoCDPlayer.h"

#include <QKeyEvent>
#include <QMenu>
#include <QMenuBar>
#include <QVBoxLayout>

#include "player/HelpFile.h"
#include "video/MMControl.h"

namespace cantovel {

frmVideoCDPlayer::frmVideoCDPlayer() : Form(QStringLiteral("frmVideoCDPlayer")) {
    setWindowTitle(QString::fromLatin1(Caption));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(6, 6, 6, 6);
    MenuBar = new QMenuBar(this);
    layout->setMenuBar(MenuBar);
    FileMenu = MenuBar->addMenu(QStringLiteral("&File"));
    FileMenu->setObjectName(QStringLiteral("FileMenu"));
    ExitMenu = FileMenu->addAction(QStringLiteral("E&xit"));
    ExitMenu->setObjectName(QStringLiteral("ExitMenu"));
    connect(ExitMenu, &QAction::triggered, this, &frmVideoCDPlayer::ExitMenu_Click);
    MMControl1 = new MMControl(this);
    layout->addWidget(MMControl1);
    Form_Load();
}

frmVideoCDPlayer::~frmVideoCDPlayer() = default;

void frmVideoCDPlayer::Form_Load() {
    MMControl1->Wait = true;
    MMControl1->Notify = false;
    MMControl1->DeviceType = QStringLiteral("VideoCD");
    MMControl1->setCommand(QStringLiteral("open"));
}

void frmVideoCDPlayer::ExitMenu_Click() {
    close();
}

bool frmVideoCDPlayer::unloadEvent() {
    MMControl1->setCommand(QStringLiteral("close"));
    return false;
}

void frmVideoCDPlayer::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape) {
        close();
        return;
    }
    if (event->key() == Qt::Key_F1) {
        ShowHelpTopic(QStringLiteral("Video CD Player (Standalone)"));
        return;
    }
    Form::keyPressEvent(event);
}

}  // namespace cantovel
