#pragma once
// "Cantovel - Convert MP3 to WAV": a list of MP3 and MP2 files decoded to WAV one after
// the other. Nothing is played aloud.

#include <memory>

#include "convert/FileQueueForm.h"
#include "platform/mp3decoder/Mp3Decoder.h"

namespace cantovel {

class frmDecode : public FileQueueForm {
    Q_OBJECT
  public:
    frmDecode();
    ~frmDecode() override;

    QAction* DecodeMenu;  // the File menu's run command
    // Null when no decoder is provided.
    std::unique_ptr<Mp3Decoder> Mp3Play1;
};

}  // namespace cantovel
