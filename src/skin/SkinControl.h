#pragma once
// A windowless control of a skinned window: a place on the face that paints a picture
// and takes the mouse, with its tooltip. Like an image control that sizes itself to its
// picture, it takes the size of each picture it is given; the empty picture leaves the
// place as it is, painting nothing.

#include <QPixmap>
#include <QRect>
#include <QString>

namespace cantovel {

struct SkinControl {
    QRect rect;
    QString toolTip;
    QPixmap picture;
    bool visible = true;
    bool enabled = true;

    void setPicture(const QPixmap& p) {
        picture = p;
        if (!p.isNull()) rect.setSize(p.size());
    }
    int Left() const { return rect.x(); }
    void setLeft(int left) { rect.moveLeft(left); }
    int Width() const { return rect.width(); }
    bool contains(const QPoint& pt) const { return visible && rect.contains(pt); }
};

}  // namespace cantovel
