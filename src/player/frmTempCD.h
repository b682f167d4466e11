#pragma once
// The hidden window that holds the CD reader the main window plays audio CD tracks with.
// It comes up the first time code touches it; stopping a CD unloads it.

#include <memory>

#include "app/Form.h"
#include "platform/cdreader/CDReader.h"

namespace cantovel {

class frmTempCD : public Form {
    Q_OBJECT
  public:
    frmTempCD();
    ~frmTempCD() override;

    // Null when no reader is provided.
    std::unique_ptr<cantovel::CDReader> CDReader;

    // The reader, set to the drive whose track folder holds `cdaPath` ("…/Track05.cda"),
    // or to the drive chosen for audio play in the settings when no drive holds it. Null
    // when no reader is provided.
    cantovel::CDReader* ReaderFor(const QString& cdaPath);

    void CDReader_CopyStarted();

  protected:
    bool unloadEvent() override;
};

}  // namespace cantovel
