#include "cd/frmCDDBSites.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QTreeWidget>

#include "app/Runtime.h"
#include "cd/CdBase.h"
#include "cd/CdBase_Code.h"

namespace cantovel {

frmCDDBSites::frmCDDBSites(CdBase& cdBase) : Form(QStringLiteral("frmCDDBSites")), CdBase1(cdBase) {
    setWindowTitle(QStringLiteral("CDDB Sites"));
    auto* layout = new QGridLayout(this);
    txtAddress = new QLineEdit(this);
    txtPort = new QLineEdit(this);
    lvwSites = new QTreeWidget(this);
    lvwSites->setRootIsDecorated(false);
    lvwSites->setHeaderLabels(
        {QStringLiteral("Address"), QStringLiteral("Port"), QStringLiteral("Location")});
    cmdAccept = new QPushButton(QStringLiteral("Accept"), this);
    cmdCancel = new QPushButton(QStringLiteral("Cancel"), this);
    layout->addWidget(new QLabel(QStringLiteral("Address"), this), 0, 0);
    layout->addWidget(txtAddress, 0, 1);
    layout->addWidget(new QLabel(QStringLiteral("Port"), this), 1, 0);
    layout->addWidget(txtPort, 1, 1);
    layout->addWidget(lvwSites, 2, 0, 1, 2);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cmdAccept);
    buttons->addWidget(cmdCancel);
    layout->addLayout(buttons, 3, 0, 1, 2);
    resize(520, 340);
    connect(lvwSites, &QTreeWidget::itemClicked, this, [this] { lvwSites_Click(); });
    connect(lvwSites, &QTreeWidget::itemDoubleClicked, this, [this] { lvwSites_Click(); });
    connect(cmdAccept, &QPushButton::clicked, this, [this] { cmdAccept_Click(); });
    connect(cmdCancel, &QPushButton::clicked, this, [this] { cmdCancel_Click(); });
    Form_Load();
}

void frmCDDBSites::Form_Load() {
    txtAddress->setText(CdBase1.Server);
    txtPort->setText(QString::number(CdBase1.Port));
    QPointer<frmCDDBSites> self(this);
    const int count = CdBase1.GetSites();
    if (!self) return;
    for (int i = 1; i <= count; ++i)
        new QTreeWidgetItem(lvwSites, {CdBase1.SiteAddress(i), QString::number(CdBase1.SitePort(i)),
                                       CdBase1.SiteLocation(i)});
}

void frmCDDBSites::lvwSites_Click() {
    QTreeWidgetItem* item = lvwSites->currentItem();
    if (!item) return;
    txtAddress->setText(item->text(0));
    txtPort->setText(item->text(1));
}

void frmCDDBSites::cmdAccept_Click() {
    CdBase1.Server = txtAddress->text();
    const double port = Val(txtPort->text());
    if (FitsInt16(port)) CdBase1.Port = qint16(CInt(port));
    unload();
}

void frmCDDBSites::cmdCancel_Click() {
    unload();
}

}  // namespace cantovel
