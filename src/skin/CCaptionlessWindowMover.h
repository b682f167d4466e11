#pragma once
// Moves a window that has no caption: a drag anywhere the window hands its mouse to
// carries the window along, so the grabbed point stays under the pointer.

#include <QPoint>
#include <QPointer>
#include <QWidget>

namespace cantovel {

class CCaptionlessWindowMover {
  public:
    QWidget* Form() const { return form_; }
    void setForm(QWidget* form) { form_ = form; }

    // X and Y in the window's pixels, of the press and of each move.
    void HandleMouseDown(int X, int Y);
    void HandleMouseMove(int X, int Y);
    void HandleMouseUp();

    bool isMoving() const { return moving_; }

  private:
    QPointer<QWidget> form_;
    bool moving_ = false;
    int startX_ = 0;
    int startY_ = 0;
};

}  // namespace cantovel
