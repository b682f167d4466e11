#pragma once
// Where an mpv player draws its pictures: an OpenGL widget laid over the player's video
// widget, filling it, drawn through mpv's render API.
//
// mpv never sees a window of ours. The picture therefore lives through whatever the
// desktop does to the window around it: the stay-on-top flag re-creating the native
// window, hiding, maximising, re-parenting. (A child window handed to mpv died with each
// re-creation and took the picture with it.)
//
// The surface costs nothing until it is first shown: only then does Qt make its OpenGL
// context and mpv's render context, and only at its first paint is mpv's output switched
// from the null output to this surface. While the surface is hidden, mpv goes back to the
// null output, so a player whose picture nobody sees draws nothing (and never waits on a
// paint that will not come).

#include <QOpenGLWidget>
#include <functional>

struct mpv_handle;
struct mpv_render_context;

namespace cantovel {

class MpvVideoSurface : public QOpenGLWidget {
    Q_OBJECT
  public:
    // Lays itself over `host` and follows its size. `outputChanged` is told each time
    // mpv's output should change: true for this surface, false for none.
    MpvVideoSurface(QWidget* host, std::function<void(bool)> outputChanged);
    ~MpvVideoSurface() override;

    // The mpv core to draw for (none before the first file, or after it shut down). A
    // change frees the render context of the old core first.
    void setCore(mpv_handle* mpv);
    // Frees the render context; mpv is first moved to the null output.
    void release();
    // Drawing for mpv now: a render context and a shown surface.
    bool isDrawing() const { return drawing_; }

  protected:
    void initializeGL() override;
    void paintGL() override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void createRenderContext();
    void setDrawing(bool on);
    static void onUpdate(void* self);

    QWidget* host_;
    std::function<void(bool)> outputChanged_;
    mpv_handle* mpv_ = nullptr;
    mpv_render_context* render_ = nullptr;
    bool drawing_ = false;
};

}  // namespace cantovel
