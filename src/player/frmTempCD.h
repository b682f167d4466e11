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
};

}  // namespace cantovel
