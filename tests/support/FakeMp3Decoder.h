#pragma once
// A scripted MP3 decoder: no codec, runs driven by the test or by virtual time.

#include <QList>

#include "platform/mp3decoder/Mp3Decoder.h"
#include "support/ScriptedRun.h"
#include "support/TrackedFake.h"

namespace cantovel::test {

class FakeMp3Decoder : public Mp3Decoder, public TrackedFake<FakeMp3Decoder, Mp3Decoder> {
    Q_OBJECT
  public:
    explicit FakeMp3Decoder(QObject* parent = nullptr);

    qint16 SetFiles(const QString& input, const QString& output) override;
    void StartDecode() override;
    void StopDecode() override { run.stop(); }
    qint32 FrameTotal() const override { return run.frameTotal; }
    bool WriteFailed() const override { return run.writeFailed; }
    QString WriteErrorDescription() const override { return run.writeError; }

    ScriptedRun run;
};

}  // namespace cantovel::test
