#include "platform/mixer/AlsaMixer.h"

#include <alsa/asoundlib.h>

#include <algorithm>
#include <cmath>

#include "platform/Components.h"

namespace cantovel {

Mixer& Mixer::get() {
    return Components::service<Mixer>();
}

namespace {

void quietAlsa(const char*, int, const char*, int, const char*, ...) {}

// An open mixer with its master element, closed when it goes out of scope.
struct MasterLine {
    snd_mixer_t* handle = nullptr;
    snd_mixer_elem_t* elem = nullptr;
    long min = 0, max = 0;

    MasterLine(const char* card, const char* element) {
        // ALSA prints its own complaints on stderr when no card is there; they are
        // expected on machines without sound and say nothing to the user.
        snd_lib_error_set_handler(quietAlsa);
        if (snd_mixer_open(&handle, 0) < 0) {
            handle = nullptr;
            return;
        }
        snd_mixer_selem_id_t* sid = nullptr;
        snd_mixer_selem_id_alloca(&sid);
        snd_mixer_selem_id_set_index(sid, 0);
        snd_mixer_selem_id_set_name(sid, element);
        if (snd_mixer_attach(handle, card) < 0 ||
            snd_mixer_selem_register(handle, nullptr, nullptr) < 0 || snd_mixer_load(handle) < 0)
            return;
        elem = snd_mixer_find_selem(handle, sid);
        if (elem && (!snd_mixer_selem_has_playback_volume(elem) ||
                     snd_mixer_selem_get_playback_volume_range(elem, &min, &max) < 0 || max <= min))
            elem = nullptr;
    }
    ~MasterLine() {
        if (handle) snd_mixer_close(handle);
    }
    bool ok() const { return elem != nullptr; }
};

}  // namespace

AlsaMixer::AlsaMixer(QByteArray card, QByteArray element)
    : card_(std::move(card)), element_(std::move(element)) {}

long AlsaMixer::GetMasterVolume() {
    MasterLine line(card_.constData(), element_.constData());
    if (!line.ok()) return -1;
    long value = 0;
    if (snd_mixer_selem_get_playback_volume(line.elem, SND_MIXER_SCHN_FRONT_LEFT, &value) < 0)
        return -1;
    // Both directions round to the nearest step, so a level read and written back (as every
    // start does) lands on the same raw value instead of creeping down a step each time.
    return std::lround(double(value - line.min) * 100.0 / double(line.max - line.min));
}

bool AlsaMixer::SetMasterVolume(long value) {
    MasterLine line(card_.constData(), element_.constData());
    if (!line.ok()) return false;
    value = std::clamp(value, 0L, 100L);
    const long raw = line.min + std::lround(double(value) * double(line.max - line.min) / 100.0);
    return snd_mixer_selem_set_playback_volume_all(line.elem, raw) >= 0;
}

}  // namespace cantovel
