#include "skin/frmSettings.h"

#include <QCheckBox>
#include <QComboBox>
#include <QCoreApplication>
#include <QDir>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "app/Forms.h"
#include "app/Runtime.h"
#include "app/Settings.h"
#include "app/Utilities.h"
#include "cd/CDTrackListView.h"
#include "platform/Components.h"
#include "platform/cdreader/CDReader.h"
#include "player/frmMain.h"
#include "shell/BrowseForFolder.h"
#include "shell/WindowHelpers.h"

namespace cantovel {

namespace {

// Where the CD reader keeps its settings, shared with the CD windows and audio play.
QString dacKey() {
    return AppKey() + QStringLiteral("\\DAC");
}

int valueOf(const QCheckBox* box) {
    return box->isChecked() ? 1 : 0;
}

void setValue(QCheckBox* box, const QString& setting) {
    box->setChecked(Val(setting) == 1);
}

QString withoutTrailingSlash(QString path) {
    if (path.size() > 1 && path.endsWith(u'/')) path.chop(1);
    return path;
}

// The system's folder for temporary files, lower-cased and with its "/" at the end.
QString systemTempPath() {
    QString path = QDir::tempPath();
    if (!path.endsWith(u'/')) path += u'/';
    return path.toLower();
}

QLabel* sunkenLabel(QWidget* parent) {
    auto* l = new QLabel(parent);
    l->setFrameShape(QFrame::Panel);
    l->setFrameShadow(QFrame::Sunken);
    l->setMinimumWidth(220);
    l->setTextInteractionFlags(Qt::TextSelectableByMouse);
    return l;
}

}  // namespace

frmSettings::frmSettings()
    : Form(QStringLiteral("frmSettings"), nullptr, Qt::Dialog),
      CDReader(Components::create<cantovel::CDReader>()) {
    setWindowTitle(QStringLiteral("General Settings"));
    auto* layout = new QVBoxLayout(this);

    Check2 = new QCheckBox(QStringLiteral("&Save Cantovel's Position"), this);
    Check3 = new QCheckBox(QStringLiteral("Cantovel is Always On &Top"), this);
    Check6 = new QCheckBox(QStringLiteral("&Loop Media Play"), this);
    chkExtension = new QCheckBox(QStringLiteral("Show File E&xtension on Main Window"), this);
    for (QCheckBox* c : {Check2, Check3, Check6, chkExtension}) layout->addWidget(c);

    auto* grid = new QGridLayout;
    lblSkinPath = sunkenLabel(this);
    cmdSkinPath = new QPushButton(QStringLiteral("Bro&wse..."), this);
    grid->addWidget(new QLabel(QStringLiteral("Skin Path:"), this), 0, 0);
    grid->addWidget(lblSkinPath, 0, 1);
    grid->addWidget(cmdSkinPath, 0, 2);

    Label2 = sunkenLabel(this);
    Command3 = new QPushButton(QStringLiteral("&Browse..."), this);
    auto* tempCaption = new QLabel(QStringLiteral("&Temporary Files Location:"), this);
    tempCaption->setBuddy(Command3);
    grid->addWidget(tempCaption, 1, 0);
    grid->addWidget(Label2, 1, 1);
    grid->addWidget(Command3, 1, 2);

    DevCombo = new QComboBox(this);
    auto* driveCaption = new QLabel(QStringLiteral("CD-ROM &Drive to use for Audio Play:"), this);
    driveCaption->setBuddy(DevCombo);
    grid->addWidget(driveCaption, 2, 0);
    grid->addWidget(DevCombo, 2, 1, 1, 2);
    layout->addLayout(grid);

    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    Command1 = new QPushButton(QStringLiteral("OK"), this);
    Command1->setDefault(true);
    Command2 = new QPushButton(QStringLiteral("Default"), this);
    cmdCancel = new QPushButton(QStringLiteral("Cancel"), this);
    for (QPushButton* b : {Command1, Command2, cmdCancel}) buttons->addWidget(b);
    layout->addLayout(buttons);

    connect(cmdSkinPath, &QPushButton::clicked, this, [this] { cmdSkinPath_Click(); });
    connect(Command3, &QPushButton::clicked, this, [this] { Command3_Click(); });
    connect(Command1, &QPushButton::clicked, this, [this] { Command1_Click(); });
    connect(Command2, &QPushButton::clicked, this, [this] { Command2_Click(); });
    connect(cmdCancel, &QPushButton::clicked, this, [this] { cmdCancel_Click(); });
    connect(DevCombo, &QComboBox::activated, this, [this] { DevCombo_Click(); });

    Form_Load();
}

void frmSettings::Form_Load() {
    setValue(Check2, ReadAppSetting(QStringLiteral("Position"), QStringLiteral("0")));
    setValue(Check3, ReadAppSetting(QStringLiteral("Always Ontop"), QStringLiteral("0")));
    setValue(Check6, ReadAppSetting(QStringLiteral("Loop Other"), QStringLiteral("0")));
    setValue(chkExtension, ReadAppSetting(QStringLiteral("Show Extension"), QStringLiteral("1")));
    const QString skin = ReadAppSetting(QStringLiteral("SkinPath"), QString());
    lblSkinPath->setText(skin.trimmed().isEmpty() ? QString::fromLatin1(DefaultSkin) : skin);
    Label2->setText(ReadAppSetting(QStringLiteral("Temp  Location"), systemTempPath()));
    if (!CDReader) return;
    CDReader->LoadRegistry(RegRoot::CurrentUser, dacKey());
    for (const CDDevice& d : CDReader->Devices()) DevCombo->addItem(CDTrackListView::DriveText(d));
    DevCombo->setCurrentIndex(CDReader->DeviceID());
}

frmSettings::~frmSettings() {
    if (CDReader) CDReader->Close();
}

void frmSettings::DevCombo_Click() {
    if (!CDReader || DevCombo->currentIndex() < 0) return;
    CDReader->Close();
    CDReader->setDeviceID(DevCombo->currentIndex());
    CDReader->Open();
}

void frmSettings::cmdSkinPath_Click() {
    const QString start = ReadAppSetting(
        QStringLiteral("Skin Path"),
        withoutTrailingSlash(QCoreApplication::applicationDirPath() + QStringLiteral("/Skins")));
    const QString folder = BrowseForFolder(this, QStringLiteral("Select Skin Path"), start);
    if (folder.isEmpty()) return;
    SaveAppSetting(QStringLiteral("Skin Path"), withoutTrailingSlash(folder));
    if (folder != QLatin1String(DefaultSkin))
        lblSkinPath->setText(folder.endsWith(u'/') ? folder : folder + u'/');
}

void frmSettings::Command3_Click() {
    const QString start =
        ReadAppSetting(QStringLiteral("Temp Path"), withoutTrailingSlash(Label2->text()));
    const QString folder = BrowseForFolder(
        this,
        QStringLiteral("Select the drive and directory you wish to be used by Cantovel for "
                       "temporary space..."),
        start);
    if (folder.isEmpty()) return;
    SaveAppSetting(QStringLiteral("Temp Path"), withoutTrailingSlash(folder));
    Label2->setText(folder);
}

void frmSettings::Command1_Click() {
    frmMain* main = frmMain::instance();
    // 1.
    if (main) FormOnTop(main, valueOf(Check3) == 1);
    // 2. The title follows the extension switch at once.
    if (main && !main->lblTitle[0].Caption.trimmed().isEmpty())
        main->Title(ParsePathParts(
            main->CurrentFile, valueOf(chkExtension) ? QStringLiteral("f") : QStringLiteral("b")));
    // 3.
    SaveAppSetting(QStringLiteral("Temp  Location"), Label2->text());
    SaveAppSetting(QStringLiteral("Position"), QString::number(valueOf(Check2)));
    SaveAppSetting(QStringLiteral("Always Ontop"), QString::number(valueOf(Check3)));
    SaveAppSetting(QStringLiteral("Loop Other"), QString::number(valueOf(Check6)));
    SaveAppSetting(QStringLiteral("Show Extension"), QString::number(valueOf(chkExtension)));
    // 4.
    const QString skin = lblSkinPath->text();
    SaveAppSetting(QStringLiteral("SkinPath"),
                   skin == QLatin1String(DefaultSkin) ? QString() : skin);
    // 5.
    if (CDReader) CDReader->SaveRegistry(RegRoot::CurrentUser, dacKey());
    // 6. A return to the default skin waits for the next start, or for "Default".
    if (main && !skin.isEmpty() && PathExists(skin)) main->LoadSkin(skin);
    // 7.
    unload();
}

void frmSettings::Command2_Click() {
    if (frmMain* main = frmMain::instance()) main->LoadSkin(QString());
    SaveAppSetting(QStringLiteral("SkinPath"), QString());
    // Without a main window nothing else would close the dialog.
    if (!frmMain::instance()) unload();
}

void frmSettings::cmdCancel_Click() {
    unload();
}

int frmSettings::KeyNumbers(int KeyAscii) {
    if (KeyAscii > 26 && !QStringLiteral("0123456789.").contains(QChar(KeyAscii))) KeyAscii = 0;
    return KeyAscii;
}

}  // namespace cantovel
