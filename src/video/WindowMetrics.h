#pragma once
// Window places and sizes as the video windows keep and compare them: twips (1440 to the
// logical inch) for the saved places and the smallest size, outer frames for sizing.

#include <QRect>
#include <QSize>

#include "shell/TwipsPerPixel.h"

class QWidget;

namespace cantovel {

// What the frame, caption and menu add around `inside`: the window's outer size minus the
// inside's size, in pixels.
QSize ChromeSize(const QWidget* window, const QWidget* inside);
// Places a top-level window by its outer frame, as the window system reports it.
void SetOuterGeometry(QWidget* window, const QRect& outer);
// The screen's size in pixels (the whole screen, not its work area).
QSize ScreenSize(const QWidget* window);

}  // namespace cantovel
