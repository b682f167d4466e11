#include "app/Form.h"

#include <QCloseEvent>
#include <QMenu>

#include "app/Forms.h"
#include "platform/clock/Clock.h"
#include "shell/WindowHelpers.h"

namespace cantovel {

namespace {

// Qt has just written a window's caption to the desktop when these reach the window; an
// empty caption it would have filled in.
class EmptyCaptionKeeper : public QObject {
  protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        const QEvent::Type t = event->type();
        if (t == QEvent::WindowTitleChange || t == QEvent::WinIdChange || t == QEvent::Show)
            ShowEmptyCaption(static_cast<QWidget*>(watched));
        return false;
    }
};

}  // namespace

Form::Form(const QString& name, QWidget* parent, Qt::WindowFlags flags)
    : QWidget(parent, flags), name_(name) {
    setObjectName(name);
    static EmptyCaptionKeeper captions;
    installEventFilter(&captions);
    Forms::add(this);
}

Form::~Form() {
    Forms::remove(this);
}

QMenu* Form::namedMenu(const char* name, const QString& caption) {
    auto* menu = new QMenu(caption, this);
    menu->setObjectName(QLatin1String(name));
    return menu;
}

QAction* Form::namedItem(QMenu* menu, const char* name, const QString& caption, bool checkable) {
    QAction* action = menu->addAction(caption);
    action->setObjectName(QLatin1String(name));
    action->setCheckable(checkable);
    return action;
}

bool Form::runUnload(UnloadMode mode) {
    if (gone_) return true;
    if (unloading_) return false;
    unloading_ = true;
    const bool cancelled = queryUnload(mode) || unloadEvent();
    unloading_ = false;
    if (cancelled) return false;
    gone_ = true;
    Forms::remove(this);
    hide();
    EventsRunning::deleteWhenIdle(this);
    return true;
}

bool Form::unload() {
    return runUnload(FromCode);
}

void Form::closeEvent(QCloseEvent* event) {
    if (gone_ || runUnload(FromControlMenu))
        event->accept();
    else
        event->ignore();
}

}  // namespace cantovel
