// A CDDB read answer, an xmcd record: any text fills the record's properties with names
// that read back, and the submission check gives its verdict without touching a drive.
#include <QCoreApplication>

#include "FuzzInput.h"
#include "cd/CdBase.h"

using namespace cantovel;

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv) {
    static QCoreApplication app(*argc, *argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const QString answer =
        QString::fromLatin1(reinterpret_cast<const char*>(data), qsizetype(size));
    CdBase cddb;
    const QString summary = cddb.ParseReadResponse(answer);
    if (answer.startsWith(QLatin1String("600"))) {
        fuzz::require(summary == QLatin1String("600 Timeout"));
        return 0;
    }
    fuzz::require(summary.startsWith(cddb.Title));
    fuzz::require(cddb.Tracks >= 0);
    for (int track = 0; track <= cddb.Tracks + 1 && track <= 101; ++track) {
        cddb.SongName(track);
        cddb.GetExtTrackData(track);
    }
    fuzz::require(cddb.SongName(cddb.Tracks + 1).isEmpty());
    // A record whose names all came through can be offered back to the server.
    const QString check = cddb.CheckSubmitData();
    fuzz::require(check == QLatin1String("OK") || !check.isEmpty());
    return 0;
}
