#pragma once
// The MP3 encoder control of the conversion windows: it turns a sound file into a
// constant-bit-rate MP3 on a worker thread and reports on the UI thread.
//
// A run: set Bitrate and DownMix, SetFiles(source, output), Start. EncodeProgress(value)
// follows with values that never go down and end at FrameTotal(), then EncodeDone. The
// MP3 is written under a temporary name beside the output and takes the output's name
// (replacing an older file) once complete. A run that cannot write it (a full disk, a
// folder that refuses or has gone) ends early with EncodeDone and WriteFailed() true, and
// an older output stays as it was. Stop ends a run at once: no further event comes from
// it, and the output stays as far as it was written.
//
// Calls that can fail the way a control raises a run-time error leave the error's number
// in lastError() (0 when the call went through) and its text in lastErrorDescription();
// every call of this interface that can raise clears them first.

#include <QObject>
#include <QString>

#include "platform/wavechain/RaisedError.h"

namespace cantovel {

class Mp3Encoder : public QObject, public RaisedError {
    Q_OBJECT
  public:
    // SetFiles results.
    enum : qint16 {
        FilesAccepted = 0,
        SourceNotAudio = 1,  // missing, unreadable, or not a sound file
        SourceDamaged = 2,   // a WAV cut short
    };

    using QObject::QObject;

    // Constant bit rate in bits a second (32000, 64000, 128000, 256000); a figure under
    // 1000 is read as kbit/s. A rate the MP3 format lacks at the stream's sample rate is
    // taken to the nearest one it has.
    void setBitrate(qint32 bitsPerSecond) { bitrate_ = bitsPerSecond; }
    qint32 Bitrate() const { return bitrate_; }
    // True mixes every channel into one: a mono MP3.
    void setDownMix(bool downMix) { downMix_ = downMix; }
    bool DownMix() const { return downMix_; }

    // Names the source and the output of the next run, ending any run first. The source
    // may be any sound file libsndfile reads (any WAV: 8 to 32-bit, float, any rate); it
    // is checked now. Returns FilesAccepted or a code above; a refused source raises
    // nothing.
    virtual qint16 SetFiles(const QString& input, const QString& output) = 0;
    // Starts encoding the accepted files. Without accepted files it does nothing.
    // Raises ErrRefused when the encoder refuses the settings.
    virtual void Start() = 0;
    virtual void Stop() = 0;
    // The count EncodeProgress runs up to: MP3 frames of the run, known from Start.
    virtual qint32 FrameTotal() const = 0;
    // True once the current or last run failed to write its output.
    virtual bool WriteFailed() const = 0;
    // Why, as the user reads it ("No space left on device").
    virtual QString WriteErrorDescription() const = 0;

  signals:
    void EncodeProgress(qint32 value);
    void EncodeDone();

  private:
    qint32 bitrate_ = 128000;
    bool downMix_ = false;
};

}  // namespace cantovel
