#include "platform/mediaplayer/MpvVideoSurface.h"

#include <mpv/client.h>
#include <mpv/render_gl.h>

#include <QEvent>
#include <QMetaObject>
#include <QOpenGLContext>
#include <QOpenGLFunctions>

namespace cantovel {

namespace {

void* procAddress(void*, const char* name) {
    QOpenGLContext* context = QOpenGLContext::currentContext();
    return context ? reinterpret_cast<void*>(context->getProcAddress(name)) : nullptr;
}

}  // namespace

MpvVideoSurface::MpvVideoSurface(QWidget* host, std::function<void(bool)> outputChanged)
    : QOpenGLWidget(host), host_(host), outputChanged_(std::move(outputChanged)) {
    setObjectName(QStringLiteral("VideoSurface"));
    // Clicks belong to the host, whose window handles them.
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setGeometry(host->rect());
    host->installEventFilter(this);
}

MpvVideoSurface::~MpvVideoSurface() {
    // The context dies later, in the base class's destructor: its end must not call back
    // into the part of this object that is already gone.
    if (context()) disconnect(context(), nullptr, this, nullptr);
    release();
}

void MpvVideoSurface::setCore(mpv_handle* mpv) {
    if (mpv == mpv_) return;
    release();
    mpv_ = mpv;
    if (mpv_ && context() && context()->isValid()) {
        makeCurrent();
        createRenderContext();
        doneCurrent();
    }
}

void MpvVideoSurface::initializeGL() {
    // A new context (the first, or one made after a re-parenting) needs a new renderer.
    connect(context(), &QOpenGLContext::aboutToBeDestroyed, this, &MpvVideoSurface::release,
            Qt::UniqueConnection);
    createRenderContext();
}

void MpvVideoSurface::createRenderContext() {
    if (!mpv_ || render_) return;
    mpv_opengl_init_params gl{&procAddress, nullptr};
    int advanced = 0;
    mpv_render_param params[] = {
        {MPV_RENDER_PARAM_API_TYPE, const_cast<char*>(MPV_RENDER_API_TYPE_OPENGL)},
        {MPV_RENDER_PARAM_OPENGL_INIT_PARAMS, &gl},
        {MPV_RENDER_PARAM_ADVANCED_CONTROL, &advanced},
        {MPV_RENDER_PARAM_INVALID, nullptr}};
    if (mpv_render_context_create(&render_, mpv_, params) < 0) {
        render_ = nullptr;
        return;
    }
    mpv_render_context_set_update_callback(render_, &MpvVideoSurface::onUpdate, this);
    // The first paint switches mpv over.
    update();
}

void MpvVideoSurface::onUpdate(void* self) {
    // On one of mpv's threads, where no mpv call may be made: only ask for a paint.
    auto* surface = static_cast<MpvVideoSurface*>(self);
    QMetaObject::invokeMethod(
        surface, [surface] { surface->update(); }, Qt::QueuedConnection);
}

void MpvVideoSurface::paintGL() {
    if (!drawing_) {
        // mpv is switched over only once the surface can really be painted: its output
        // waits on each paint, and an unexposed window would never give one. Not from
        // within the paint, which mpv's switch would wait on.
        if (render_ && isVisible())
            QMetaObject::invokeMethod(
                this, [this] { setDrawing(isVisible()); }, Qt::QueuedConnection);
        QOpenGLFunctions* gl = context()->functions();
        gl->glClearColor(0, 0, 0, 1);
        gl->glClear(GL_COLOR_BUFFER_BIT);
        return;
    }
    const qreal ratio = devicePixelRatioF();
    mpv_opengl_fbo fbo{int(defaultFramebufferObject()), int(width() * ratio), int(height() * ratio),
                       0};
    int flip = 1;
    mpv_render_param params[] = {{MPV_RENDER_PARAM_OPENGL_FBO, &fbo},
                                 {MPV_RENDER_PARAM_FLIP_Y, &flip},
                                 {MPV_RENDER_PARAM_INVALID, nullptr}};
    mpv_render_context_render(render_, params);
}

void MpvVideoSurface::release() {
    if (!render_) return;
    // mpv leaves the renderer before it goes: freeing it under a running output would
    // switch the film's picture off for good.
    setDrawing(false);
    makeCurrent();
    mpv_render_context_free(render_);
    render_ = nullptr;
    doneCurrent();
}

void MpvVideoSurface::setDrawing(bool on) {
    on = on && render_;
    if (on == drawing_) return;
    drawing_ = on;
    if (outputChanged_) outputChanged_(on);
}

void MpvVideoSurface::showEvent(QShowEvent* event) {
    QOpenGLWidget::showEvent(event);
    // Shown again with its old context (a window re-created for stay-on-top, say), the
    // surface is composed from its last picture without a paint of its own; ask for one,
    // or mpv would stay on the null output and the old picture on the screen.
    update();
}

void MpvVideoSurface::hideEvent(QHideEvent* event) {
    QOpenGLWidget::hideEvent(event);
    setDrawing(false);
}

bool MpvVideoSurface::eventFilter(QObject* watched, QEvent* event) {
    if (watched == host_ && event->type() == QEvent::Resize) setGeometry(host_->rect());
    return QOpenGLWidget::eventFilter(watched, event);
}

}  // namespace cantovel
