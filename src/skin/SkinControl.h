#pragma once
// A windowless control of a skinned window: a place on the face that paints a picture
// and takes the mouse, with its tooltip.

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
};

}  // namespace cantovel
