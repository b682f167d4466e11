#include "video/WindowMetrics.h"

#include <QElapsedTimer>
#include <QGuiApplication>
#include <QPointer>
#include <QScreen>
#include <QTimer>
#include <QWidget>
#include <QWindow>
#include <algorithm>
#include <cmath>
#include <memory>

namespace cantovel {

namespace {
const QScreen* screenOf(const QWidget* window) {
    if (window && window->screen()) return window->screen();
    return QGuiApplication::primaryScreen();
}

// The window manager has told the frame's edges. Asked of the native window alone: its
// geometry and the widget's own can differ for a moment (a resize on its way), which is
// no frame.
bool hasFrame(const QWidget* window) {
    const QWindow* handle = window->windowHandle();
    return window->isVisible() && handle && !handle->frameMargins().isNull();
}
// Asks `tick` every 20 ms while `window` lives, until it answers true.
void poll(QWidget* window, std::function<bool()> tick) {
    auto* timer = new QTimer(window);
    timer->setInterval(20);
    QObject::connect(timer, &QTimer::timeout, window, [timer, tick] {
        if (!tick()) return;
        timer->stop();
        timer->deleteLater();
    });
    timer->start();
}
}  // namespace

QRect OuterGeometry(const QWidget* window) {
    // The native window's frame is asked of the window system each time; the widget's own
    // copy is taken once and misses a frame that comes later without a move.
    const QWindow* handle = window->windowHandle();
    return handle && window->isVisible() ? handle->frameGeometry() : window->frameGeometry();
}

QSize ChromeSize(const QWidget* window, const QWidget* inside) {
    return OuterGeometry(window).size() - inside->size();
}

void SetOuterGeometry(QWidget* window, const QRect& outer) {
    // The inside stands where the frame's edges put it: those the window manager told, or
    // for a hidden window the last Qt knew.
    QMargins edges;
    if (const QWindow* handle = window->windowHandle(); handle && window->isVisible()) {
        edges = handle->frameMargins();
    } else {
        const QRect frame = window->frameGeometry(), inside = window->geometry();
        edges = QMargins(inside.left() - frame.left(), inside.top() - frame.top(),
                         frame.right() - inside.right(), frame.bottom() - inside.bottom());
    }
    window->setGeometry(outer.marginsRemoved(edges));
}

bool KeepOuterMinimum(QWidget* window, int twips) {
    if (window->windowState() & (Qt::WindowMaximized | Qt::WindowMinimized | Qt::WindowFullScreen))
        return false;
    const double tpp = TwipsPerPixel(window);
    const QRect outer = OuterGeometry(window);
    const int least = int(std::ceil(twips / tpp));
    if (outer.width() >= least && outer.height() >= least) return false;
    SetOuterGeometry(window, QRect(outer.topLeft(), QSize(std::max(outer.width(), least),
                                                          std::max(outer.height(), least))));
    return true;
}

QSize ScreenSize(const QWidget* window) {
    const QScreen* screen = screenOf(window);
    return screen ? screen->geometry().size() : QSize(1024, 768);
}

bool IsFramed(const QWidget* window) {
    static const bool noManager = QGuiApplication::platformName() == QLatin1String("offscreen") ||
                                  QGuiApplication::platformName() == QLatin1String("minimal");
    if (noManager) return true;
    return hasFrame(window);
}

void WhenFramed(QWidget* window, std::function<void()> then) {
    if (IsFramed(window)) {
        then();
        return;
    }
    // The frame arrives with the window manager's answer to the mapping, in its own time
    // (long on a busy machine); Qt raises no event for it, so it is looked for. A window
    // that gets no frame (none wanted, or no manager) needs nothing done again.
    auto shownFor = std::make_shared<QElapsedTimer>();
    auto waited = std::make_shared<QElapsedTimer>();
    waited->start();
    poll(window, [window, then, shownFor, waited] {
        if (window->isVisible() && !shownFor->isValid()) shownFor->start();
        const bool framed = hasFrame(window);
        const bool gaveUp =
            (shownFor->isValid() && shownFor->elapsed() > 10000) || waited->elapsed() > 60000;
        if (!framed && !gaveUp) return false;
        if (framed) then();
        return true;
    });
}

void MoveOuter(QWidget* window, QPoint outer) {
    // Qt places an unframed window by its inside.
    window->move(outer);
    if (IsFramed(window)) return;
    QPointer<QWidget> guard(window);
    WhenFramed(window, [guard, outer] {
        if (!guard) return;
        // The frame's edges can be known before the window manager's last word on where the
        // inside stands; one correction then read a stale place and the inside settled on
        // `outer` after it. So the place is looked at until it has held for a while.
        auto ticks = std::make_shared<int>(0), held = std::make_shared<int>(0);
        poll(guard, [guard, outer, ticks, held] {
            // Not over a place the user or a maximise has given the window meanwhile.
            const bool placedElsewhere =
                guard->windowState() &
                (Qt::WindowMaximized | Qt::WindowMinimized | Qt::WindowFullScreen);
            const QRect now = OuterGeometry(guard);
            if (placedElsewhere || ++*ticks > 100 || (now.topLeft() == outer && ++*held > 10))
                return true;
            if (now.topLeft() != outer) {
                *held = 0;
                SetOuterGeometry(guard, QRect(outer, now.size()));
            }
            return false;
        });
    });
}

}  // namespace cantovel
