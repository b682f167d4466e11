#pragma once
#include <QPixmap>
#include <QString>

namespace cantovel {

// A built-in bitmap by its resource number (101 to 110: the built-in skin); the empty
// picture for any other number.
QPixmap LoadResPicture(int id);

// A skin's picture file; the empty picture when it is missing or not a whole picture. A
// bitmap whose pixels stop short of what its header promises counts as unreadable: the
// image reader would fill the gap with whatever memory held.
QPixmap ReadSkinPicture(const QString& path);

}  // namespace cantovel
