#pragma once
// The system's master output volume. Every call opens and closes the mixer anew, so a
// device that comes or goes between calls is seen.

namespace cantovel {

class Mixer {
public:
    virtual ~Mixer() = default;
    // The master volume 0..100, or -1 when there is no mixer.
    virtual long GetMasterVolume() = 0;
    // Sets the master volume (clamped to 0..100); false when there is no mixer.
    virtual bool SetMasterVolume(long value) = 0;

    static Mixer& get();
};

}  // namespace cantovel
