#pragma once
// The MP3 player control of the MP3 to WAV window: it decodes an MPEG audio file (layer
// 3 or 2) into a 16-bit PCM WAV at the stream's own rate and channels, on a worker thread,
// and reports on the UI thread. Nothing is played aloud.
//
// A run: SetFiles(source, output), StartDecode. DecodeProgress(value) follows with values
// that never go down and end at FrameTotal(), then DecodeDone. The WAV is written under a
// temporary name beside the output and takes the output's name (replacing an older file)
// once complete. A run that cannot write it (a full disk, a folder that refuses or has
// gone) ends early with DecodeDone and WriteFailed() true, and an older output stays as
// it was. StopDecode ends a run at once: no further event comes from it, and the WAV
// stays as far as it was written.
//
// Calls that can fail the way a control raises a run-time error leave the error's number
// in lastError() (0 when the call went through) and its text in lastErrorDescription().

#include <QObject>
#include <QString>

#include "platform/wavechain/RaisedError.h"

namespace cantovel {

class Mp3Decoder : public QObject, public RaisedError {
    Q_OBJECT
  public:
    // SetFiles results.
    enum : qint16 {
        FilesAccepted = 0,
        SourceNotMpeg = 1,  // missing, unreadable or no MPEG audio
    };

    using QObject::QObject;

    // Names the source and the output of the next run, ending any run first. The source
    // is opened and its first frames looked at now: a file with no MPEG audio in it is
    // refused, and nothing is raised.
    virtual qint16 SetFiles(const QString& input, const QString& output) = 0;
    // Starts decoding the accepted files. Without accepted files it does nothing.
    virtual void StartDecode() = 0;
    virtual void StopDecode() = 0;
    // The count DecodeProgress runs up to: the stream's MPEG frames, known from SetFiles.
    virtual qint32 FrameTotal() const = 0;
    // True once the current or last run failed to write its output.
    virtual bool WriteFailed() const = 0;
    // Why, as the user reads it ("No space left on device").
    virtual QString WriteErrorDescription() const = 0;

  signals:
    void DecodeProgress(qint32 value);
    void DecodeDone();

  private:
};

}  // namespace cantovel
