#include "skin/ResPicture.h"

#include <QString>

// The resources live in a static library: nothing would pull them into the program
// unless they are asked for by name.
static void initSkinResources() {
    Q_INIT_RESOURCE(skin);
}

namespace cantovel {

QPixmap LoadResPicture(int id) {
    static const bool ready = (initSkinResources(), true);
    (void)ready;
    return QPixmap(QStringLiteral(":/res/%1").arg(id));
}

}  // namespace cantovel
