#pragma once
#include "platform/mixer/Mixer.h"

namespace cantovel::test {

// A master volume held in memory; `present` false behaves as a machine without a mixer.
class FakeMixer : public Mixer {
  public:
    long GetMasterVolume() override { return present ? volume : -1; }
    bool SetMasterVolume(long value) override {
        ++sets;
        if (!present) return false;
        volume = value < 0 ? 0 : value > 100 ? 100 : value;
        return true;
    }
    bool present = true;
    long volume = 70;
    int sets = 0;
};

}  // namespace cantovel::test
