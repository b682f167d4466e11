#include "shell/cSysTray.h"

#include <QApplication>
#include <QMouseEvent>
#include <QSystemTrayIcon>
#include <QWidget>

namespace cantovel {

namespace {
std::optional<bool> availableOverride;
}  // namespace

cSysTray::cSysTray(QObject* parent) : QObject(parent) {}

bool cSysTray::Available() {
    return availableOverride.value_or(QSystemTrayIcon::isSystemTrayAvailable());
}

void cSysTray::setAvailableOverride(std::optional<bool> available) {
    availableOverride = available;
}

// Ending the control with the icon up takes the icon away.
cSysTray::~cSysTray() {
    setInTray(false);
}

void cSysTray::setTrayIcon(const QIcon& icon) {
    icon_ = icon;
    if (installed_ && tray_) tray_->setIcon(icon_);
}

void cSysTray::setTrayTip(const QString& text) {
    tip_ = text;
    if (installed_ && tray_) tray_->setToolTip(tip_.left(TipLength));
}

QString cSysTray::shownTip() const {
    if (!installed_ || !tray_) return {};
    return tray_->toolTip();
}

void cSysTray::setInTray(bool inTray) {
    if (inTray == installed_) return;
    installed_ = inTray;
    if (!inTray) {
        if (iconWindow_) iconWindow_->removeEventFilter(this);
        iconWindow_ = nullptr;
        tray_.reset();
        return;
    }
    tray_ = std::make_unique<QSystemTrayIcon>();
    if (!icon_.isNull()) tray_->setIcon(icon_);
    if (!tip_.isEmpty()) tray_->setToolTip(tip_.left(TipLength));
    connect(tray_.get(), &QSystemTrayIcon::activated, this,
            [this](QSystemTrayIcon::ActivationReason reason) { onActivated(int(reason)); });
    const QWidgetList before = QApplication::topLevelWidgets();
    tray_->show();
    for (QWidget* w : QApplication::topLevelWidgets())
        if (!before.contains(w) && w->inherits("QSystemTrayIconSys")) iconWindow_ = w;
    if (iconWindow_) iconWindow_->installEventFilter(this);
}

bool cSysTray::eventFilter(QObject* watched, QEvent* event) {
    if (watched != iconWindow_) return QObject::eventFilter(watched, event);
    const auto button = [event] {
        const auto b = static_cast<QMouseEvent*>(event)->button();
        return b == Qt::LeftButton ? 1 : b == Qt::RightButton ? 2 : 0;
    };
    switch (event->type()) {
        case QEvent::MouseMove:
            hookMessage(TrayMessage, WM_MOUSEMOVE);
            break;
        case QEvent::MouseButtonPress:
            if (button()) hookMessage(TrayMessage, button() == 1 ? WM_LBUTTONDOWN : WM_RBUTTONDOWN);
            break;
        case QEvent::MouseButtonRelease:
            if (button()) hookMessage(TrayMessage, button() == 1 ? WM_LBUTTONUP : WM_RBUTTONUP);
            break;
        case QEvent::MouseButtonDblClick:
            if (button())
                hookMessage(TrayMessage, button() == 1 ? WM_LBUTTONDBLCLK : WM_RBUTTONDBLCLK);
            break;
        default:
            return false;
    }
    // The icon's own handling would tell the press as a finished click.
    return true;
}

void cSysTray::hookMessage(int message, int lParam) {
    if (message != TrayMessage) return;
    switch (lParam) {
        case WM_MOUSEMOVE:
            emit MouseMove();
            break;
        case WM_LBUTTONDOWN:
            emit MouseDown(1);
            break;
        case WM_RBUTTONDOWN:
            emit MouseDown(2);
            break;
        case WM_LBUTTONUP:
            emit MouseUp(1);
            break;
        case WM_RBUTTONUP:
            emit MouseUp(2);
            break;
        case WM_LBUTTONDBLCLK:
            emit MouseDblClick(1);
            break;
        case WM_RBUTTONDBLCLK:
            emit MouseDblClick(2);
            break;
        default:
            break;
    }
}

void cSysTray::onActivated(int reason) {
    // The icon's window tells its mouse itself.
    if (iconWindow_) return;
    // The desktop tells a finished click only; it becomes the messages of that click, and
    // the pointer was over the icon, so a move comes first.
    hookMessage(TrayMessage, WM_MOUSEMOVE);
    switch (QSystemTrayIcon::ActivationReason(reason)) {
        case QSystemTrayIcon::Context:
            hookMessage(TrayMessage, WM_RBUTTONDOWN);
            hookMessage(TrayMessage, WM_RBUTTONUP);
            break;
        case QSystemTrayIcon::Trigger:
            hookMessage(TrayMessage, WM_LBUTTONDOWN);
            hookMessage(TrayMessage, WM_LBUTTONUP);
            break;
        case QSystemTrayIcon::DoubleClick:
            hookMessage(TrayMessage, WM_LBUTTONDBLCLK);
            break;
        default:
            break;
    }
}

}  // namespace cantovel
