#include "skin/frmDisclaimer.h"

#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace cantovel {

frmDisclaimer::frmDisclaimer() : Form(QStringLiteral("frmDisclaimer"), nullptr, Qt::Dialog) {
    setWindowTitle(QStringLiteral("Disclaimer"));
    auto* layout = new QVBoxLayout(this);
    lblDisclaimer = new QLabel(
        QStringLiteral(
            "Cantovel is provided \"as is\", without warranty of any kind, express or implied, "
            "including the warranties of merchantability, fitness for a particular purpose "
            "and non-infringement.  In no event shall Brightfen be liable for any claim, "
            "damages or other liability arising from the use of this software.\n\n"
            "Copying audio CDs and converting media may be restricted where you live.  Make "
            "copies only of media you own, for your own use, and only where the law allows "
            "it.\n\n"
            "Conversions write over files of the same name without asking.  Keep copies of "
            "anything you cannot replace."),
        this);
    lblDisclaimer->setWordWrap(true);
    layout->addWidget(lblDisclaimer);
    cmdOK = new QPushButton(QStringLiteral("OK"), this);
    cmdOK->setDefault(true);
    layout->addWidget(cmdOK, 0, Qt::AlignCenter);
    connect(cmdOK, &QPushButton::clicked, this, [this] { unload(); });
    setFixedWidth(400);
}

}  // namespace cantovel
