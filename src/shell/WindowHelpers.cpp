#include "shell/WindowHelpers.h"

#include <xcb/xcb.h>

#include <QGuiApplication>
#include <QtGui/qguiapplication_platform.h>
#include <QScreen>
#include <QWidget>
#include <cstdlib>
#include <cstring>

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

namespace {

xcb_atom_t atom(xcb_connection_t* c, const char* name) {
    const xcb_intern_atom_cookie_t cookie = xcb_intern_atom(c, 0, uint16_t(strlen(name)), name);
    xcb_intern_atom_reply_t* reply = xcb_intern_atom_reply(c, cookie, nullptr);
    const xcb_atom_t a = reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
    free(reply);
    return a;
}

}  // namespace

void ShowEmptyCaption(QWidget* window) {
    if (!window || !window->isWindow() || !window->windowTitle().isEmpty()) return;
    if (!window->testAttribute(Qt::WA_WState_Created)) return;
    auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (!x11 || !x11->connection()) return;
    xcb_connection_t* c = x11->connection();
    const auto id = xcb_window_t(window->winId());
    static const xcb_atom_t netName = atom(c, "_NET_WM_NAME");
    static const xcb_atom_t utf8 = atom(c, "UTF8_STRING");
    if (netName != XCB_ATOM_NONE && utf8 != XCB_ATOM_NONE)
        xcb_change_property(c, XCB_PROP_MODE_REPLACE, id, netName, utf8, 8, 0, nullptr);
    xcb_change_property(c, XCB_PROP_MODE_REPLACE, id, XCB_ATOM_WM_NAME, XCB_ATOM_STRING, 8, 0,
                        nullptr);
    xcb_flush(c);
}

}  // namespace cantovel
