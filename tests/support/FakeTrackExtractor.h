#pragma once
// A scripted track extractor: drives and tracks from a script, runs that go by themselves
// in virtual time or are driven by the test.

#include <QHash>
#include <QList>
#include <QStringList>
#include <memory>

#include "platform/trackextractor/TrackExtractor.h"
#include "support/TrackedFake.h"

namespace cantovel {
class Timer;
}

namespace cantovel::test {

class FakeTrackExtractor : public TrackExtractor,
                           public TrackedFake<FakeTrackExtractor, TrackExtractor> {
    Q_OBJECT
  public:
    explicit FakeTrackExtractor(QObject* parent = nullptr);
    ~FakeTrackExtractor() override;

    qint16 Initialize() override { return initializeResult; }
    int DriveCount() override { return int(drives.size()); }
    QString DriveName(int index) override { return drives.value(index - 1); }
    void SelectDrive(int index) override;
    int TrackCount() override;
    qint32 TrackLength(int track) override;
    qint16 ExtractTrack(QString& fileName, int track) override;
    void Abort() override;
    bool WriteFailed() const override { return false; }
    QString WriteErrorDescription() const override { return {}; }
    qint16 Preview(qint16 track, qint16 startSecond, qint16 seconds) override;
    void EndPreview() override { ++endPreviews; }

    // Script.
    qint16 initializeResult = 0;
    QStringList drives{QStringLiteral("Fake CD drive")};
    // Track lengths in milliseconds of the disc in each drive, by drive index from 1.
    QHash<int, QList<qint32>> discs{{1, {61000, 125000, 3000}}};
    // ExtractTrack of these tracks answers the code and starts nothing.
    QHash<int, qint16> refusals;
    // Runs go by themselves: `steps` progress events `stepMs` apart, then the end.
    bool autoRun = true;
    int steps = 4;
    int stepMs = 100;

    // Record.
    int selectedDrive = 0;
    QList<QPair<QString, int>> extractions;  // every ExtractTrack call
    int aborts = 0;
    QList<QList<qint16>> previews;
    int endPreviews = 0;
    bool running = false;

    // Test side.
    void progress(qint32 value);
    void finish();

  private:
    void halt();
    std::unique_ptr<Timer> timer_;
    int step_ = 0;
};

}  // namespace cantovel::test
