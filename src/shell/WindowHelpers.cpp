#include "shell/WindowHelpers.h"

#include <xcb/xcb.h>

#include <QtGui/qguiapplication_platform.h>
#include <QGuiApplication>
#include <QScreen>
#include <QWidget>
#include <algorithm>
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
    if (restore && !w->isVisible()) MapNormally(w);
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

// The X connection of a window of ours that has its native window, or none (another
// platform, or not yet created).
xcb_connection_t* x11Connection(const QWidget* window) {
    if (!window || !window->isWindow() || !window->testAttribute(Qt::WA_WState_Created))
        return nullptr;
    auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return x11 ? x11->connection() : nullptr;
}

}  // namespace

void MapNormally(QWidget* window) {
    if (!window) return;
    window = window->window();
    xcb_connection_t* c = x11Connection(window);
    if (!c) return;
    const auto id = xcb_window_t(window->winId());
    xcb_get_property_reply_t* reply = xcb_get_property_reply(
        c, xcb_get_property(c, 0, id, XCB_ATOM_WM_HINTS, XCB_ATOM_WM_HINTS, 0, 9), nullptr);
    // WM_HINTS: flags, input, initial_state, then six more words; StateHint is flag bit 1.
    quint32 hints[9] = {};
    if (reply && reply->format == 32)
        memcpy(hints, xcb_get_property_value(reply),
               std::min<size_t>(sizeof hints, size_t(xcb_get_property_value_length(reply))));
    free(reply);
    const quint32 stateHint = 1u << 1, normalState = 1;
    if ((hints[0] & stateHint) && hints[2] == normalState) return;
    hints[0] |= stateHint;
    hints[2] = normalState;
    xcb_change_property(c, XCB_PROP_MODE_REPLACE, id, XCB_ATOM_WM_HINTS, XCB_ATOM_WM_HINTS, 32, 9,
                        hints);
    xcb_flush(c);
}

void ShowEmptyCaption(QWidget* window) {
    if (!window || !window->windowTitle().isEmpty()) return;
    xcb_connection_t* c = x11Connection(window);
    if (!c) return;
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
