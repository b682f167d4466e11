// The main window's face.
#include <QPainter>

#include "app/Runtime.h"
#include "player/frmMain.h"

namespace cantovel {

void frmMain::LoadSkin(const QString&) {
    // The built-in face until skins are read.
    setAutoFillBackground(true);
    QPalette p = palette();
    p.setColor(QPalette::Window, QColor(0x20, 0x24, 0x2c));
    setPalette(p);
}

void frmMain::PaintVolumes() { update(); }

}  // namespace cantovel
