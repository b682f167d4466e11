#pragma once
// A scripted MP3 encoder: no codec, runs driven by the test or by virtual time.

#include <QList>

#include "platform/mp3encoder/Mp3Encoder.h"
#include "support/ScriptedRun.h"

namespace cantovel::test {

class FakeMp3Encoder : public Mp3Encoder {
    Q_OBJECT
  public:
    explicit FakeMp3Encoder(QObject* parent = nullptr);
    ~FakeMp3Encoder() override;

    qint16 SetFiles(const QString& input, const QString& output) override;
    void Start() override;
    void Stop() override { run.stop(); }
    qint32 FrameTotal() const override { return run.frameTotal; }
    bool WriteFailed() const override { return run.writeFailed; }

    ScriptedRun run;
    // Bitrate and DownMix as they were at each Start.
    QList<QPair<qint32, bool>> startSettings;

    // Registers the fake as the encoder every window gets.
    static void install();
    // The fakes alive, oldest first, and the newest one (null if none).
    static QList<FakeMp3Encoder*>& instances();
    static FakeMp3Encoder* latest();
};

}  // namespace cantovel::test
