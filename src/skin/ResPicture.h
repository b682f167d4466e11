#pragma once
#include <QPixmap>

namespace cantovel {

// A built-in bitmap by its resource number (101 to 110: the built-in skin); the empty
// picture for any other number.
QPixmap LoadResPicture(int id);

}  // namespace cantovel
