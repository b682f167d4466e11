#include "shell/Subclass.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QDropEvent>
#include <QHash>
#include <QMenu>
#include <QMimeData>
#include <QMouseEvent>
#include <QUrl>
#include <QWidget>

#include "app/FileNames.h"

namespace cantovel {

namespace {

// One row a hooked window: which Subclass sees its messages.
QHash<const QWidget*, Subclass*>& hookTable() {
    static QHash<const QWidget*, Subclass*> table;
    return table;
}

QStringList localFiles(const QMimeData* data) {
    QStringList files;
    if (!data || !data->hasUrls()) return files;
    for (const QUrl& url : data->urls()) {
        if (!url.isLocalFile()) continue;
        // Qt decodes a path as UTF-8; its percent-encoded form still holds the name's bytes.
        if (url.host().isEmpty())
            files << NameFromBytes(
                QByteArray::fromPercentEncoding(url.path(QUrl::FullyEncoded).toLatin1()));
        else
            files << url.toLocalFile();
    }
    return files;
}

}  // namespace

Subclass::Subclass(QObject* parent) : QObject(parent) {}

Subclass::~Subclass() {
    unhook();
}

Subclass* Subclass::hookOf(const QWidget* window) {
    return hookTable().value(window);
}

void Subclass::setHWnd(QWidget* window) {
    if (window == hooked_) return;
    unhook();
    if (window) hook(window);
}

void Subclass::hook(QWidget* window) {
    if (Subclass* older = hookTable().value(window)) older->unhook();
    window_ = window;
    hooked_ = window;
    hookTable().insert(window, this);
    // Application-wide: caption clicks land on the window's children, and its menus are
    // windows of their own.
    qApp->installEventFilter(this);
    connect(window, &QObject::destroyed, this, &Subclass::windowGone);
    lastProposed_ = window->frameGeometry();
    updateDrops();
}

void Subclass::unhook() {
    if (!hooked_) return;
    qApp->removeEventFilter(this);
    if (window_) {
        disconnect(window_, &QObject::destroyed, this, &Subclass::windowGone);
        if (setAcceptDrops_) window_->setAcceptDrops(false);
    }
    setAcceptDrops_ = false;
    hookTable().remove(hooked_);
    window_ = nullptr;
    hooked_ = nullptr;
}

void Subclass::windowGone() {
    setAcceptDrops_ = false;
    hookTable().remove(hooked_);
    hooked_ = nullptr;
    window_ = nullptr;
    qApp->removeEventFilter(this);
}

void Subclass::setMessages(quint32 msg, bool watch) {
    if (watch && !watched_.contains(msg)) watched_.append(msg);
    if (!watch) watched_.removeAll(msg);
    updateDrops();
}

// Watching drops opens the window for them, as accepting dropped files did.
void Subclass::updateDrops() {
    if (!window_) return;
    const bool want = messages(Wm::DROPFILES);
    if (want && !window_->acceptDrops()) {
        window_->setAcceptDrops(true);
        setAcceptDrops_ = true;
    } else if (!want && setAcceptDrops_) {
        window_->setAcceptDrops(false);
        setAcceptDrops_ = false;
    }
}

long Subclass::CallWndProc(quint32 msg, qintptr, qintptr) {
    if (!window_) return 0;
    for (auto it = dispatching_.rbegin(); it != dispatching_.rend(); ++it)
        if (it->msg == msg) {
            it->passOn = true;
            break;
        }
    return 0;
}

bool Subclass::dispatch(quint32 msg, qintptr wParam, qintptr lParam, bool* alive) {
    QPointer<Subclass> self(this);
    dispatching_.append({msg, false});
    long result = 0;
    emit WndProc(msg, wParam, lParam, &result);
    if (!self) {
        if (alive) *alive = false;
        return false;
    }
    if (alive) *alive = true;
    return dispatching_.takeLast().passOn;
}

bool Subclass::eventFilter(QObject* watched, QEvent* event) {
    if (!window_) return false;
    switch (event->type()) {
        case QEvent::Move:
        case QEvent::Resize:
            if (watched == window_) return geometryChanged(event);
            return false;
        case QEvent::Show:
            if (auto* menu = qobject_cast<QMenu*>(watched); menu && messages(Wm::INITMENUPOPUP)) {
                // A menu of this window (or of one of its children) is opening.
                for (QWidget* p = menu->parentWidget(); p; p = p->parentWidget())
                    if (p == window_) {
                        dispatch(Wm::INITMENUPOPUP, reinterpret_cast<qintptr>(menu), 0, nullptr);
                        break;
                    }
            }
            return false;
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonRelease:
        case QEvent::MouseButtonDblClick:
        case QEvent::ContextMenu:
            return captionClick(watched, event);
        case QEvent::DragEnter:
        case QEvent::DragMove:
        case QEvent::Drop:
            if (watched == window_ && messages(Wm::DROPFILES)) return dropEvent(event);
            return false;
        default:
            return false;
    }
}

bool Subclass::geometryChanged(QEvent* event) {
    QWidget* w = window_;
    const bool isMove = event->type() == QEvent::Move;
    if (w->isWindow() && applying_ == 0 && messages(Wm::WINDOWPOSCHANGING)) {
        // Qt tells of a new place after the fact: the handler sees it as the proposal and
        // may move the window on; the move it makes reports itself.
        if (positionChanging(isMove ? WindowPos::NoSize : WindowPos::NoMove)) return false;
        if (!window_) return false;
    }
    if (isMove && messages(Wm::MOVE)) {
        const QPoint p = w->geometry().topLeft();
        dispatch(Wm::MOVE, 0, Wm::makeLong(p.x(), p.y()), nullptr);
    } else if (!isMove && messages(Wm::SIZE)) {
        const qintptr kind = w->isMinimized() ? 1 : w->isMaximized() ? 2 : 0;
        dispatch(Wm::SIZE, kind, Wm::makeLong(w->width(), w->height()), nullptr);
    }
    return false;
}

// True when the handler moved the window elsewhere.
bool Subclass::positionChanging(quint32 flags) {
    QWidget* w = window_;
    const QRect frame = w->frameGeometry();
    // One report for one change: a new geometry comes as a move and a resize event.
    if (frame == lastProposed_) return false;
    lastProposed_ = frame;
    WindowPos pos{w, frame.x(), frame.y(), frame.width(), frame.height(), flags};
    bool alive = true;
    dispatch(Wm::WINDOWPOSCHANGING, 0, reinterpret_cast<qintptr>(&pos), &alive);
    if (!alive || !window_) return true;
    const bool moved = pos.x != frame.x() || pos.y != frame.y();
    const bool sized = pos.cx != frame.width() || pos.cy != frame.height();
    if (!moved && !sized) return false;
    ++applying_;
    if (sized) w->resize(w->size() + QSize(pos.cx - frame.width(), pos.cy - frame.height()));
    if (moved) w->move(pos.x, pos.y);
    --applying_;
    lastProposed_ = w->frameGeometry();
    return true;
}

bool Subclass::captionClick(QObject* watched, QEvent* event) {
    QWidget* w = window_;
    auto* target = qobject_cast<QWidget*>(watched);
    if (!target || !w->isWindow() || !(w->windowFlags() & Qt::FramelessWindowHint)) return false;
    if (target != w && !w->isAncestorOf(target)) return false;
    if (!messages(Wm::NCRBUTTONDOWN) && !messages(Wm::NCRBUTTONUP)) return false;

    QPoint global;
    if (event->type() == QEvent::ContextMenu) {
        auto* menuEvent = static_cast<QContextMenuEvent*>(event);
        if (menuEvent->reason() != QContextMenuEvent::Mouse) return false;
        global = menuEvent->globalPos();
    } else {
        auto* mouse = static_cast<QMouseEvent*>(event);
        if (mouse->button() != Qt::RightButton) return false;
        global = mouse->globalPosition().toPoint();
    }
    const QPoint local = w->mapFromGlobal(global);
    if (!w->rect().contains(local) || local.y() >= Wm::CaptionHeight) return false;

    // The caption's clicks are not the client area's: the window sees them only if the
    // handler asks for the default handling.
    quint32 msg = 0;
    if (event->type() == QEvent::MouseButtonPress || event->type() == QEvent::MouseButtonDblClick)
        msg = Wm::NCRBUTTONDOWN;
    else if (event->type() == QEvent::MouseButtonRelease)
        msg = Wm::NCRBUTTONUP;
    if (!msg || !messages(msg)) return true;
    return !dispatch(msg, Wm::HTCAPTION, Wm::makeLong(global.x(), global.y()), nullptr);
}

bool Subclass::dropEvent(QEvent* event) {
    auto* drop = static_cast<QDropEvent*>(event);
    const QStringList files = localFiles(drop->mimeData());
    if (files.isEmpty()) return false;
    if (event->type() != QEvent::Drop) {
        drop->acceptProposedAction();
        return true;
    }
    drop->acceptProposedAction();
    dropped_ = files;
    bool alive = true;
    const bool passOn = dispatch(Wm::DROPFILES, reinterpret_cast<qintptr>(&dropped_), 0, &alive);
    if (!alive) return true;
    dropped_.clear();
    return !passOn;
}

}  // namespace cantovel
