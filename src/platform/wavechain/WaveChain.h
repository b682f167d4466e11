#pragma once
// The batch converter's chain of wave components, source file to trigger to format
// converter to destination file, driven through the trigger. It reads any sound file
// libsndfile reads, mixes the channels and changes the rate to the target format, and
// writes a WAV in that format, on a worker thread; events arrive on the UI thread.
//
// A run: name the source, PrepareOutput and name the destination, set the target format,
// Start. TriggerStarted follows; at the end of the source TriggerDataEnd, with the
// destination complete and closed. Stop (or Close) ends the run, and TriggerStopped
// follows it after the call returns. A failed write raises DstFileError while State()
// holds StateWriteFailed; the run writes no more, and stays running until it is stopped.
//
// The destination is written aside and put in place only when complete, so a failed run
// leaves an older file of its name as it was. A stopped run's output stays as far as it
// was written, but for a destination that is the source itself: the source stays whole.
//
// Start can fail the way a control raises a run-time error: it leaves the error's number
// in lastError() (0 when the call went through) and its text in lastErrorDescription(),
// and then nothing has started.

#include <QObject>
#include <QString>

#include "platform/wavechain/RaisedError.h"

#include "platform/wavechain/WaveFormat.h"

namespace cantovel {

class WaveChain : public QObject, public RaisedError {
    Q_OBJECT
  public:
    // Bits of State().
    static constexpr int StateRunning = 1;
    static constexpr int StateWriteFailed = 2;

    using QObject::QObject;

    // The source file's wave: its name, and how far the run has read of its length, in
    // frames of the source (the length is known from Start).
    void setSrcFileName(const QString& name) { srcFileName_ = name; }
    QString SrcFileName() const { return srcFileName_; }
    virtual qint64 SrcPosition() const = 0;
    virtual qint64 SrcLength() const = 0;

    // Readies a destination name before the file is opened: makes its folder if missing.
    // False when the folder can't be made.
    virtual bool PrepareOutput(const QString& name) = 0;
    // The destination file's wave.
    void setDstFileName(const QString& name) { dstFileName_ = name; }
    QString DstFileName() const { return dstFileName_; }

    // The format converter's target.
    void setTargetFormat(const WaveFormat& format) { targetFormat_ = format; }
    WaveFormat TargetFormat() const { return targetFormat_; }

    // The trigger.
    virtual void Start() = 0;
    virtual void Stop() = 0;
    // Stops the run if any and lets go of both files.
    virtual void Close() = 0;
    virtual int State() const = 0;

  signals:
    void TriggerStarted();
    void TriggerDataEnd();
    void TriggerStopped();
    void DstFileError();

  private:
    QString srcFileName_;
    QString dstFileName_;
    WaveFormat targetFormat_;
};

}  // namespace cantovel
