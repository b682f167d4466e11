#include "video/WindowMetrics.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWidget>

namespace cantovel {

namespace {
const QScreen* screenOf(const QWidget* window) {
    if (window && window->screen()) return window->screen();
    return QGuiApplication::primaryScreen();
}
}  // namespace

QSize ChromeSize(const QWidget* window, const QWidget* inside) {
    return window->frameGeometry().size() - inside->size();
}

void SetOuterGeometry(QWidget* window, const QRect& outer) {
    // The inside stands where the frame's edges put it.
    const QRect frame = window->frameGeometry(), inside = window->geometry();
    window->setGeometry(QRect(outer.topLeft() + (inside.topLeft() - frame.topLeft()),
                              outer.size() - (frame.size() - inside.size())));
}

QSize ScreenSize(const QWidget* window) {
    const QScreen* screen = screenOf(window);
    return screen ? screen->geometry().size() : QSize(1024, 768);
}

}  // namespace cantovel
