#pragma once
// Window positions are stored in twips, 1440 to the logical inch, as they always were.

#include <QGuiApplication>
#include <QScreen>
#include <QWidget>

namespace cantovel {

// Twips in one pixel of the screen a window is on.
inline double TwipsPerPixel(const QWidget* w) {
    const QScreen* screen = w->screen() ? w->screen() : QGuiApplication::primaryScreen();
    const double dpi = screen ? screen->logicalDotsPerInchX() : 96.0;
    return 1440.0 / (dpi > 0 ? dpi : 96.0);
}

}  // namespace cantovel
