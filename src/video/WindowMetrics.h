#pragma once
// Window places and sizes as the video windows keep and compare them: twips (1440 to the
// logical inch) for the saved places and the smallest size, outer frames for sizing.

#include <QRect>
#include <QSize>
#include <functional>

#include "shell/TwipsPerPixel.h"

class QWidget;

namespace cantovel {

// The window's outer frame as the window system has it now.
QRect OuterGeometry(const QWidget* window);
// What the frame, caption and menu add around `inside`: the window's outer size minus the
// inside's size, in pixels.
QSize ChromeSize(const QWidget* window, const QWidget* inside);
// Places a top-level window by its outer frame, as the window system reports it.
void SetOuterGeometry(QWidget* window, const QRect& outer);
// In the normal state, grows a window whose outer frame is below `twips` in either
// direction to that size, keeping its top left; true when it did (the move brings a resize
// of its own). Maximised and minimised windows have no minimum.
bool KeepOuterMinimum(QWidget* window, int twips);
// The screen's size in pixels (the whole screen, not its work area).
QSize ScreenSize(const QWidget* window);

// Whether the window's frame is what the window manager made of it: shown and framed, or
// on a platform with no window manager. Before that, the outer frame reads as the inside.
bool IsFramed(const QWidget* window);
// Runs `then` once the window is framed: at once when it is, else when the window manager
// has framed the shown window; never for a window that gets no frame.
void WhenFramed(QWidget* window, std::function<void()> then);
// Puts the window's outer frame's top left at `outer`, now and again once it is framed, so
// that a place saved from the frame reads back to the same place.
void MoveOuter(QWidget* window, QPoint outer);

}  // namespace cantovel
