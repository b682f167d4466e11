#pragma once
// The real libmpv players behind the program's windows: a null audio output, a null video
// output unless the test reads pictures off the screen, and real time, since mpv works on
// its own threads.

#include <functional>
#include <memory>

#include "platform/Components.h"
#include "platform/clock/QtClock.h"
#include "platform/filmplayer/MpvFilmPlayer.h"
#include "platform/mediaplayer/MpvMediaPlayer.h"
#include "support/ScopedEnv.h"

namespace cantovel::test {

struct RealMpv {
    // Untimed play runs a file as fast as mpv decodes it; timed play is for waits that poll.
    // `made` sees every media player as it is made.
    static void install(ScopedEnv& env, bool untimed = true,
                        std::function<void(MediaPlayer*)> made = {}, bool onScreen = false) {
        env.set("CANTOVEL_AO", QByteArray("null"));
        if (!onScreen) env.set("CANTOVEL_VO", QByteArray("null"));
        if (untimed) env.set("CANTOVEL_MPV_UNTIMED", QByteArray("1"));
        Components::provideService<Clock>(std::make_shared<QtClock>());
        Components::provideFactory<MediaPlayer>([made] {
            auto player = std::make_unique<MpvMediaPlayer>();
            if (made) made(player.get());
            return player;
        });
        Components::provideFactory<FilmPlayer>([] { return std::make_unique<MpvFilmPlayer>(); });
    }
    // Waits in real time, letting events run, until `done` holds.
    static bool waitFor(const std::function<bool()>& done, int ms = 30000) {
        return Clock::get().wait(ms, done);
    }
};

}  // namespace cantovel::test
