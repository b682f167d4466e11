#pragma once
// The track extractor of the CD to MP3 window: it writes one audio track of a disc as a
// 16-bit stereo 44.1 kHz WAV on a worker thread and reports on the UI thread, and plays a
// few seconds of a track as a preview.
//
// A run: Initialize once, SelectDrive(n), then ExtractTrack(file, track). ExtractBegin
// follows, then ExtractProgress(value) with values from 0 to 1000 that never go down,
// then ExtractDone with the file complete and closed. A run that cannot write the file
// (a full disk, a folder that refuses or has gone) ends early with ExtractDone and
// WriteFailed() true; one that cannot read the whole track (none of it is on the disc, or
// a sector will not read) ends with ExtractDone and ReadFailed() true. Abort ends a run at
// once: no further event comes from it, and the WAV stays as far as it was written.
//
// Drives and tracks count from 1.

#include <QObject>
#include <QString>

#include "platform/wavechain/RaisedError.h"

namespace cantovel {

class TrackExtractor : public QObject, public RaisedError {
    Q_OBJECT
  public:
    // ExtractTrack results.
    enum : qint16 {
        Started = 0,
        NoDisc = 1,             // no drive selected, or no readable disc in it
        NoSuchTrack = 2,        // beyond the disc, or a data track
        OutputNotWritable = 3,  // the preview's own file
    };

    using QObject::QObject;

    // Starts the access to the drives; 0 on success.
    virtual qint16 Initialize() = 0;
    virtual int DriveCount() = 0;
    virtual QString DriveName(int index) = 0;
    // Makes drive `index` current and reads its disc's table of contents.
    virtual void SelectDrive(int index) = 0;
    // Tracks of the disc in the current drive; 0 without one.
    virtual int TrackCount() = 0;
    // Milliseconds; 0 for a track the disc lacks.
    virtual qint32 TrackLength(int track) = 0;
    // Starts writing `track` to `fileName`, ending any run first; nonzero (a code above)
    // when it can't start, and then no event follows.
    virtual qint16 ExtractTrack(QString& fileName, int track) = 0;
    virtual void Abort() = 0;
    // True once the current or last run failed to write its file, and why, as the user
    // reads it.
    virtual bool WriteFailed() const = 0;
    virtual QString WriteErrorDescription() const = 0;
    // True once the current or last run could not read its track to the end.
    bool ReadFailed() const { return readFailed_; }
    // Plays `seconds` of `track` from `startSecond`; nonzero when it can't.
    virtual qint16 Preview(qint16 track, qint16 startSecond, qint16 seconds) = 0;
    virtual void EndPreview() = 0;

  signals:
    void ExtractBegin();
    void ExtractProgress(qint32 value);
    void ExtractDone();

  protected:
    void setReadFailed(bool failed) { readFailed_ = failed; }

  private:
    bool readFailed_ = false;
};

}  // namespace cantovel
