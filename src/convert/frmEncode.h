#pragma once
// "Cantovel - Convert WAV to MP3": a list of WAV files encoded to MP3 one after the other.

#include <memory>

#include "convert/FileQueueForm.h"
#include "platform/mp3encoder/Mp3Encoder.h"

namespace cantovel {

class BitrateMenu;

class frmEncode : public FileQueueForm {
    Q_OBJECT
  public:
    frmEncode();
    ~frmEncode() override;

    QAction* EncodeMenu;  // the File menu's run command
    QMenu* mnuSettings;
    BitrateMenu* Bitrates;  // "&Bitrate", mnuBitrate 0 to 3
    QAction* mnuDownMix;    // checkable: a click toggles it
    // Null when no encoder is provided.
    std::unique_ptr<Mp3Encoder> Mp3Enc1;

    void Form_Load();

  protected:
    void prepareComponent() override;
    bool unloadEvent() override;
};

}  // namespace cantovel
