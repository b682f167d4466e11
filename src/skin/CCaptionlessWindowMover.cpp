#include "skin/CCaptionlessWindowMover.h"

#include <QGuiApplication>
#include <QWindow>

namespace cantovel {

namespace {
// Wayland lets no program place its own windows: there the compositor carries the drag.
bool compositorMoves() {
    return QGuiApplication::platformName().startsWith(QLatin1String("wayland"));
}
}  // namespace

void CCaptionlessWindowMover::HandleMouseDown(int X, int Y) {
    if (!form_) return;
    if (compositorMoves() && form_->windowHandle() && form_->windowHandle()->startSystemMove())
        return;
    // The press already holds the mouse for the window until it is released.
    moving_ = true;
    startX_ = X;
    startY_ = Y;
}

void CCaptionlessWindowMover::HandleMouseMove(int X, int Y) {
    if (!moving_ || !form_) return;
    form_->move(form_->x() - startX_ + X, form_->y() - startY_ + Y);
}

void CCaptionlessWindowMover::HandleMouseUp() {
    moving_ = false;
}

}  // namespace cantovel
