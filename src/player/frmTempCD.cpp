#include "player/frmTempCD.h"

#include "app/Settings.h"
#include "platform/Components.h"
#include "platform/cddrives/CdDrives.h"
#include "player/frmMain.h"

namespace cantovel {

frmTempCD::frmTempCD()
    : Form(QStringLiteral("frmTempCD")), CDReader(Components::create<cantovel::CDReader>()) {
    if (CDReader)
        connect(CDReader.get(), &CDReader::CopyStarted, this, &frmTempCD::CDReader_CopyStarted);
}

frmTempCD::~frmTempCD() = default;

cantovel::CDReader* frmTempCD::ReaderFor(const QString& cdaPath) {
    if (!CDReader) return nullptr;
    // The drive for audio play is the reader's own setting, kept with the CD windows'.
    CDReader->LoadRegistry(RegRoot::CurrentUser, AppKey() + QStringLiteral("\\DAC"));
    if (Components::hasService<CdDrives>()) {
        const QChar letter = CdDrives::get().DriveOfPath(cdaPath).Letter;
        const QList<CDDevice> devices = CDReader->Devices();
        for (int i = 0; i < devices.size(); ++i)
            if (!letter.isNull() && devices[i].DriveLetter == QString(letter))
                CDReader->setDeviceID(i);
    }
    return CDReader.get();
}

void frmTempCD::CDReader_CopyStarted() {
    if (frmMain* main = frmMain::instance()) {
        main->Timer2.setEnabled(true);
        main->CDR_Timer.setEnabled(true);
    }
}

bool frmTempCD::unloadEvent() {
    if (CDReader) {
        CDReader->StopAudio();
        CDReader->Close();
    }
    return false;
}

}  // namespace cantovel
