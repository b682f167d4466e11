#include "convert/frmConfigDlg.h"

#include <cmath>
#include <limits>

#include <QComboBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

#include "app/Runtime.h"
#include "cd/CDTrackListView.h"
#include "platform/cdreader/CDReader.h"

namespace cantovel {

const QStringList frmConfigDlg::DeviceTypes = {
    QStringLiteral("AutoDetect"), QStringLiteral("ATAPI"),    QStringLiteral("CYBER"),
    QStringLiteral("DEC"),        QStringLiteral("GRUNDIG"),  QStringLiteral("HITACHI"),
    QStringLiteral("HP"),         QStringLiteral("IBM"),      QStringLiteral("IMS"),
    QStringLiteral("KODAK"),      QStringLiteral("MATSHITA"), QStringLiteral("MITSUMI"),
    QStringLiteral("MP"),         QStringLiteral("MS"),       QStringLiteral("NEC"),
    QStringLiteral("PHILIPS"),    QStringLiteral("PIONEER"),  QStringLiteral("PLASMON"),
    QStringLiteral("PLEXTOR"),    QStringLiteral("RICOH"),    QStringLiteral("SONY"),
    QStringLiteral("TOSHIBA"),    QStringLiteral("TEAC"),     QStringLiteral("YAMAHA")};

frmConfigDlg::frmConfigDlg(CDReader* reader, QWidget* owner)
    : Form(QStringLiteral("frmConfigDlg"), owner, Qt::Dialog), reader_(reader) {
    setWindowTitle(QStringLiteral("CD Conversion Options..."));
    auto* layout = new QVBoxLayout(this);
    auto* form = new QFormLayout;
    edDeviceName = new QLineEdit(this);
    edDeviceName->setReadOnly(true);
    form->addRow(QStringLiteral("CD-ROM Drive:"), edDeviceName);
    comboDeviceType = new QComboBox(this);
    comboDeviceType->addItems(DeviceTypes);
    form->addRow(QStringLiteral("Drive &Type:"), comboDeviceType);
    edBlockCount = new QLineEdit(QStringLiteral("26"), this);
    form->addRow(QStringLiteral("&Block Count:"), edBlockCount);
    layout->addLayout(form);

    auto* modes = new QGroupBox(QStringLiteral("Copy Mode"), this);
    auto* modeLayout = new QVBoxLayout(modes);
    const char* captions[] = {"&Normal", "&Burst-Copy", "&Sectorsynchronization"};
    for (int i = 0; i < 3; ++i) {
        Option1[i] = new QRadioButton(QString::fromLatin1(captions[i]), modes);
        modeLayout->addWidget(Option1[i]);
    }
    layout->addWidget(modes);

    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    btnOK = new QPushButton(QStringLiteral("&Okay"), this);
    btnOK->setDefault(true);
    btnCancel = new QPushButton(QStringLiteral("&Cancel"), this);
    buttons->addWidget(btnOK);
    buttons->addWidget(btnCancel);
    layout->addLayout(buttons);
    connect(btnOK, &QPushButton::clicked, this, [this] { btnOK_Click(); });
    connect(btnCancel, &QPushButton::clicked, this, [this] { btnCancel_Click(); });
    Form_Load();
}

void frmConfigDlg::Form_Load() {
    if (!reader_) return;
    comboDeviceType->setCurrentIndex(reader_->DeviceType());
    edBlockCount->setText(QString::number(reader_->BlockCount()));
    edDeviceName->setText(
        CDTrackListView::DriveText({reader_->DriveLetter(), reader_->DeviceName()}));
    if (reader_->CopyMode() >= 0 && reader_->CopyMode() < 3)
        Option1[reader_->CopyMode()]->setChecked(true);
}

void frmConfigDlg::btnOK_Click() {
    if (reader_) {
        reader_->setDeviceType(comboDeviceType->currentIndex());
        // The text's value, rounded, whatever it is; the reader reads within what drives
        // take. A figure no integer holds is passed over, as its overflow was.
        const double blocks = std::nearbyint(Val(edBlockCount->text()));
        if (blocks >= std::numeric_limits<int>::min() && blocks <= std::numeric_limits<int>::max())
            reader_->setBlockCount(int(blocks));
        reader_->setCopyMode(Option1[0]->isChecked() ? 0 : Option1[1]->isChecked() ? 1 : 2);
    }
    hide();
}

void frmConfigDlg::btnCancel_Click() {
    hide();
}

void frmConfigDlg::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape)
        unload();
    else
        Form::keyPressEvent(event);
}

}  // namespace cantovel
