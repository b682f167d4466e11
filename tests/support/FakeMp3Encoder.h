#pragma once
// A scripted MP3 encoder: no codec, runs driven by the test or by virtual time.

#include <QList>

#include "platform/mp3encoder/Mp3Encoder.h"
#include "support/ScriptedRun.h"
#include "support/TrackedFake.h"

namespace cantovel::test {

class FakeMp3Encoder : public Mp3Encoder, public TrackedFake<FakeMp3Encoder, Mp3Encoder> {
    Q_OBJECT
  public:
    explicit FakeMp3Encoder(QObject* parent = nullptr);

    qint16 SetFiles(const QString& input, const QString& output) override;
    void Start() override;
    void Stop() override { run.stop(); }
    qint32 FrameTotal() const override { return run.frameTotal; }
    bool WriteFailed() const override { return run.writeFailed; }
    QString WriteErrorDescription() const override { return run.writeError; }

    ScriptedRun run;
    // Bitrate and DownMix as they were at each Start.
    QList<QPair<qint32, bool>> startSettings;
};

}  // namespace cantovel::test
