#include "shell/frmAssociate.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPushButton>
#include <QVBoxLayout>

#include "app/AppState.h"
#include "app/Runtime.h"
#include "app/Settings.h"
#include "platform/msgbox/MsgBox.h"
#include "player/HelpFile.h"
#include "shell/AssociateFileType.h"
#include "shell/DesktopAssociations.h"

namespace cantovel {

namespace {

constexpr RegRoot Classes = RegRoot::ClassesRoot;
constexpr int kInformation = Mb::Information | Mb::SetForeground;

QStringList exts(const char* list) {
    return QString::fromLatin1(list).split(u' ', Qt::SkipEmptyParts);
}

bool isBound(const QString& extension, const QString& typeName) {
    return ReadRegValue(Classes, extension, QString(), QString()) == typeName;
}

}  // namespace

QString frmAssociate::BackupsKey() {
    // The per-user settings of a program, keyed by its title.
    return QStringLiteral("Software\\VB and VBA Program Settings\\") +
           QString::fromLatin1(AppTitle) + QStringLiteral("\\Assoc Backups");
}

frmAssociate::frmAssociate() : Form(QStringLiteral("frmAssociate"), nullptr, Qt::Dialog) {
    setWindowTitle(QStringLiteral("Associate Supported Formats..."));
    auto box = [this](const char* caption) {
        return new QCheckBox(QString::fromLatin1(caption), this);
    };
    Check9 = box("Vivo Digital Video");
    Check11 = box("CD Audio / Video");
    Check1 = box("Video for Windows (AVI)");
    Check12 = box("Active Streaming Format (ASF) ");
    Check2 = box("MPEG Video (MPG, MPEG, MP2, MPA, MPV)");
    Check3 = box("QuickTime Video (MOV)");
    Check4 = box("DirectShow Video (ENC, M1V)");
    Check5 = box("Wave Audio (WAV)");
    Check13 = box("Windows Media 4");
    Check6 = box("MIDI Audio (MID, MIDI, RMI)");
    Check8 = box("MPEG Layer 3 Audio (MP3)");
    Check10 = box("Misc Sound Formats (AIF, AIFF, AU, SND)");
    Check24 = box("Launch Associations in Current Application Instance when Available");

    // The variants differ on purpose: ".snf" in the plain binding of the sound formats,
    // ".dat" with the DirectShow types only for the running instance, and put back with
    // the CD types only in the plain variant.
    boxes_ = {{
        {Check9, exts(".viv .vivo"), exts(".viv .vivo"), exts(".viv .vivo"), exts(".viv .vivo")},
        {Check11, exts(".cda .dat"), exts(".cda .dat"), exts(".cda .dat"), exts(".cda")},
        {Check1, exts(".avi"), exts(".avi"), exts(".avi"), exts(".avi")},
        {Check12, exts(".asf"), exts(".asf"), exts(".asf"), exts(".asf")},
        {Check2, exts(".mpg .mpeg .mpa .mpv .mp2"), exts(".mpg .mpeg .mpa .mpv .mp2"),
         exts(".mpg .mpeg .mpa .mpv .mp2"), exts(".mpg .mpeg .mpa .mpv .mp2")},
        {Check3, exts(".mov .qt"), exts(".mov .qt"), exts(".mov .qt"), exts(".mov .qt")},
        {Check4, exts(".enc .m1v"), exts(".enc .m1v .dat"), exts(".enc .m1v"),
         exts(".enc .m1v .dat")},
        {Check5, exts(".wav"), exts(".wav"), exts(".wav"), exts(".wav")},
        {Check13, exts(".wma"), exts(".wma"), exts(".wma"), exts(".wma")},
        {Check6, exts(".mid .midi .rmi"), exts(".mid .midi .rmi"), exts(".mid .midi .rmi"),
         exts(".mid .midi .rmi")},
        {Check8, exts(".mp3 .mp2"), exts(".mp3 .mp2"), exts(".mp3 .mp2"), exts(".mp3 .mp2")},
        {Check10, exts(".aif .aiff .aifc .au .snf"), exts(".aif .aiff .aifc .au .snd"),
         exts(".aif .aiff .aifc .au .snd"), exts(".aif .aiff .aifc .au .snd")},
    }};

    auto* layout = new QVBoxLayout(this);
    auto* grid = new QGridLayout;
    for (int i = 0; i < 12; ++i) grid->addWidget(boxes_[i].box, i % 6, i / 6);
    layout->addLayout(grid);
    layout->addWidget(Check24);
    Command1 = new QPushButton(QStringLiteral("&Select All"), this);
    Command2 = new QPushButton(QStringLiteral("Clear &All"), this);
    Command3 = new QPushButton(QStringLiteral("&Process"), this);
    Command4 = new QPushButton(QStringLiteral("&Cancel"), this);
    auto* buttons = new QHBoxLayout;
    for (QPushButton* b : {Command1, Command2, Command3, Command4}) buttons->addWidget(b);
    layout->addLayout(buttons);
    connect(Command1, &QPushButton::clicked, this, &frmAssociate::Command1_Click);
    connect(Command2, &QPushButton::clicked, this, &frmAssociate::Command2_Click);
    connect(Command3, &QPushButton::clicked, this, &frmAssociate::Command3_Click);
    connect(Command4, &QPushButton::clicked, this, &frmAssociate::Command4_Click);

    Form_Load();
}

void frmAssociate::Form_Load() {
    Check24->setChecked(
        Val(ReadAppSetting(QStringLiteral("Same Instance Load"), QStringLiteral("1"))) == 1);
    const QString title = QString::fromLatin1(AppTitle);
    const std::pair<QCheckBox*, const char*> one[] = {
        {Check11, ".cda"}, {Check13, ".wma"}, {Check1, ".avi"}, {Check12, ".asf"},
        {Check2, ".mpg"},  {Check3, ".mov"},  {Check4, ".enc"}, {Check5, ".wav"},
        {Check6, ".mid"},  {Check8, ".mp3"},  {Check9, ".viv"},
    };
    for (const auto& [box, ext] : one)
        box->setChecked(
            isBound(QLatin1String(ext), box == Check11 ? QStringLiteral("CD Audio File") : title));
    // The sound formats need all five of their extensions.
    bool all = true;
    for (const QString& ext : exts(".aif .aiff .aifc .au .snd")) all = all && isBound(ext, title);
    Check10->setChecked(all);
}

void frmAssociate::Command1_Click() {
    for (const TypeBox& t : boxes_) t.box->setChecked(true);
}

void frmAssociate::Command2_Click() {
    for (const TypeBox& t : boxes_) t.box->setChecked(false);
}

void frmAssociate::Command3_Click() {
    const bool sameInstance = Check24->isChecked();
    const QString title = QString::fromLatin1(AppTitle);
    LastResult.reset();
    for (const TypeBox& t : boxes_) {
        if (t.box->isChecked()) {
            for (const QString& ext : sameInstance ? t.sameInstance : t.plain) {
                const bool cd = ext == QLatin1String(".cda");
                const QString cdType = QStringLiteral("CD Audio File");
                QString caption;
                if (sameInstance)
                    caption = cd ? QStringLiteral("Open with  Cantovel")
                                 : QStringLiteral("Open with Cantovel");
                LastResult = AssociateFileType(ext, cd ? cdType : QString(), {}, {},
                                               cd ? QStringLiteral("1") : QString(), false,
                                               cd ? cdType : title, {}, caption, {},
                                               sameInstance ? QStringLiteral("\"%1\"") : QString());
            }
        } else {
            for (const QString& ext : sameInstance ? t.sameInstanceBack : t.plainBack) {
                const QString former =
                    ReadRegValue(RegRoot::CurrentUser, BackupsKey(), ext, QString()).trimmed();
                if (former.isEmpty()) continue;
                WriteRegValue(Classes, ext, QString(), former);
                DesktopAssociations::restore(ext, former);
            }
        }
    }
    // Only the last call tells. With no call at all there is no result to tell, which
    // the user should hear rather than a success that did nothing.
    if (!LastResult)
        MsgBoxShow(QStringLiteral("No file types were selected, so no media files were "
                                  "associated with Cantovel."),
                   kInformation);
    else if (*LastResult)
        MsgBoxShow(QStringLiteral("Multimedia files successfully associated with Cantovel!"),
                   kInformation);
    else
        MsgBoxShow(
            QStringLiteral(
                "An error occurred while attempting to associate media files with Cantovel."),
            kInformation);
}

void frmAssociate::Command4_Click() {
    unload();
}

void frmAssociate::Form_KeyDown(int KeyCode, int) {
    if (KeyCode == Qt::Key_F1) ShowHelpTopic(QStringLiteral("Associate Supported File Types"));
}

void frmAssociate::keyPressEvent(QKeyEvent* event) {
    Form_KeyDown(event->key(), 0);
    Form::keyPressEvent(event);
}

bool frmAssociate::unloadEvent() {
    SaveAppSetting(QStringLiteral("Same Instance Load"),
                   Check24->isChecked() ? QStringLiteral("1") : QStringLiteral("0"));
    return false;
}

}  // namespace cantovel
