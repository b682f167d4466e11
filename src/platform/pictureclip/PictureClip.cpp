#include "platform/pictureclip/PictureClip.h"

namespace cantovel {

QPixmap PictureClip::GraphicCell(int index) const {
    if (picture_.isNull() || index < 0 || index >= rows_ * cols_) return {};
    const int w = CellWidth(), h = CellHeight();
    if (w <= 0 || h <= 0) return {};
    return picture_.copy((index % cols_) * w, (index / cols_) * h, w, h);
}

}  // namespace cantovel
