// A CD audio track file: any bytes are a track file or plainly not one, and a track file
// written out reads back field for field.
#include <cstring>

#include "FuzzInput.h"
#include "platform/cddrives/CdaFile.h"

using namespace cantovel;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const QString path = fuzz::writeInput(QStringLiteral("Track01.cda"), data, size);
    const std::optional<CdaFile> cda = CdaFile::read(path);
    fuzz::require(cda.has_value() == (size >= 44 && memcmp(data, "RIFF", 4) == 0 &&
                                      memcmp(data + 8, "CDDAfmt ", 8) == 0));
    if (!cda) return 0;
    const QString copy = fuzz::scratchFolder() + QStringLiteral("/Track02.cda");
    fuzz::require(cda->write(copy));
    const std::optional<CdaFile> back = CdaFile::read(copy);
    fuzz::require(back && back->toBytes() == cda->toBytes());
    fuzz::require(back->Track == cda->Track && back->Start == cda->Start &&
                  back->Length == cda->Length && back->Serial == cda->Serial);
    return 0;
}
