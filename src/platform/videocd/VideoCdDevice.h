#pragma once
// The MCI device "VideoCD": the films of a Video CD in a drive (or a disc image), one
// entry a film, shown in the device's own display window.
//
//  - Open() finds the disc; false, with an error text, when there is none. Until it is
//    open every command does nothing and Mode() is NotReady.
//  - Entries count from 1; a newly opened disc stands stopped at entry 1.
//  - Play, Pause, Stop, Prev, Next, Step and Back act as the control's buttons; the end of
//    an entry goes on to the next one, and the end of the last one stops.
//  - ModeChanged reports every change of Mode(), on the UI thread.

#include <QObject>
#include <QString>

namespace cantovel {

class VideoCdDevice : public QObject {
    Q_OBJECT
  public:
    // The MCI modes.
    enum Modes {
        NotReady = 524,
        Stopped = 525,
        Playing = 526,
        Seeking = 528,
        Paused = 529,
        DoorOpen = 530
    };

    explicit VideoCdDevice(QObject* parent = nullptr) : QObject(parent) {}
    ~VideoCdDevice() override = default;

    virtual bool Open() = 0;
    virtual void Close() = 0;
    virtual bool IsOpen() const = 0;
    virtual QString ErrorMessage() const = 0;

    virtual int Entries() const = 0;
    virtual int Entry() const = 0;
    virtual int Mode() const = 0;
    // Whether the drive can open its door (a disc image cannot).
    virtual bool CanEject() const = 0;

    virtual void Play() = 0;
    virtual void Pause() = 0;
    virtual void Stop() = 0;
    virtual void Prev() = 0;
    virtual void Next() = 0;
    // One picture forward or back.
    virtual void Step() = 0;
    virtual void Back() = 0;
    // Opens the door and closes the device.
    virtual void Eject() = 0;

  signals:
    void ModeChanged(int mode);
};

}  // namespace cantovel
