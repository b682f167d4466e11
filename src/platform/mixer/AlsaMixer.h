#pragma once
#include <QByteArray>

#include "platform/mixer/Mixer.h"

namespace cantovel {

// The "Master" simple element of an ALSA card ("default" unless told otherwise).
class AlsaMixer : public Mixer {
public:
    explicit AlsaMixer(QByteArray card = "default", QByteArray element = "Master");
    long GetMasterVolume() override;
    bool SetMasterVolume(long value) override;

private:
    QByteArray card_, element_;
};

}  // namespace cantovel
