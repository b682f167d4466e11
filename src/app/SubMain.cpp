#include "app/SubMain.h"

#include <QWidget>

namespace cantovel {

int SubMain(const QStringList&) {
    static QWidget* placeholder = new QWidget;
    placeholder->resize(300, 175);
    placeholder->show();
    return -1;
}

}  // namespace cantovel
