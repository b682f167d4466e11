#pragma once
// A Video CD device with a scripted disc: none (Open fails) or a number of entries. The
// buttons' commands move its mode as a player's would; every call is recorded.

#include <QStringList>

#include "platform/videocd/VideoCdDevice.h"
#include "support/TrackedFake.h"

namespace cantovel::test {

class FakeVideoCdDevice : public VideoCdDevice,
                          public TrackedFake<FakeVideoCdDevice, VideoCdDevice> {
    Q_OBJECT
  public:
    // Entries on the disc in the drive; 0: no Video CD.
    static int& discEntries() {
        static int entries = 0;
        return entries;
    }
    static void install(int entries) {
        discEntries() = entries;
        TrackedFake::install();
    }

    FakeVideoCdDevice() : TrackedFake(this) {}

    bool Open() override {
        calls << QStringLiteral("Open");
        if (discEntries() <= 0) return false;
        open_ = true;
        entry_ = 1;
        set(Stopped);
        return true;
    }
    void Close() override {
        calls << QStringLiteral("Close");
        open_ = false;
        set(NotReady);
    }
    bool IsOpen() const override { return open_; }
    QString ErrorMessage() const override {
        return open_ ? QString() : QStringLiteral("There is no Video CD in any drive.");
    }
    int Entries() const override { return open_ ? discEntries() : 0; }
    int Entry() const override { return entry_; }
    int Mode() const override { return mode_; }
    bool CanEject() const override { return true; }
    void Play() override { act("Play", Playing); }
    void Pause() override { act("Pause", mode_ == Playing ? Paused : mode_); }
    void Stop() override { act("Stop", Stopped); }
    void Prev() override {
        entry_ = std::max(1, entry_ - 1);
        act("Prev", mode_);
    }
    void Next() override {
        entry_ = std::min(Entries(), entry_ + 1);
        act("Next", mode_);
    }
    void Step() override { act("Step", Paused); }
    void Back() override { act("Back", Paused); }
    void Eject() override {
        act("Eject", DoorOpen);
        open_ = false;
    }

    QStringList calls;

  private:
    void act(const char* name, int mode) {
        calls << QLatin1String(name);
        if (open_) set(mode);
    }
    void set(int mode) {
        if (mode == mode_) return;
        mode_ = mode;
        emit ModeChanged(mode);
    }
    bool open_ = false;
    int entry_ = 0;
    int mode_ = NotReady;
};

}  // namespace cantovel::test
