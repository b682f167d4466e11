#include "shell/WindowHelpers.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWidget>

namespace cantovel {

QPoint centeredPosition(const QRect& screen, const QSize& form) {
    return {screen.x() + (screen.width() - form.width()) / 2,
            screen.y() + (screen.height() - form.height()) / 2};
}

void CenterForm(QWidget* form) {
    if (!form) return;
    QScreen* screen = form->screen() ? form->screen() : QGuiApplication::primaryScreen();
    if (!screen) return;
    form->move(centeredPosition(screen->geometry(), form->frameGeometry().size()));
}

void FormOnTop(QWidget* form, bool onTop) {
    if (!form) return;
    QWidget* w = form->window();
    if (bool(w->windowFlags() & Qt::WindowStaysOnTopHint) == onTop) return;
    // Changing a window's flags hides it; it comes back where it was.
    const bool shown = w->isVisible();
    w->setWindowFlag(Qt::WindowStaysOnTopHint, onTop);
    if (shown) w->show();
}

void ForceFrontWindow(QWidget* window, bool restore) {
    if (!window) return;
    QWidget* w = window->window();
    // Already in front: active, and not hidden away in the task bar.
    if (w->isActiveWindow() && w->isVisible() && !w->isMinimized()) return;
    if (restore && w->isMinimized()) w->setWindowState(w->windowState() & ~Qt::WindowMinimized);
    w->raise();
    w->activateWindow();
    w->show();
}

}  // namespace cantovel
