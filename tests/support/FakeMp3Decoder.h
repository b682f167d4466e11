#pragma once
// A scripted MP3 decoder: no codec, runs driven by the test or by virtual time.

#include <QList>

#include "platform/mp3decoder/Mp3Decoder.h"
#include "support/ScriptedRun.h"

namespace cantovel::test {

class FakeMp3Decoder : public Mp3Decoder {
    Q_OBJECT
  public:
    explicit FakeMp3Decoder(QObject* parent = nullptr);
    ~FakeMp3Decoder() override;

    qint16 SetFiles(const QString& input, const QString& output) override;
    void StartDecode() override;
    void StopDecode() override { run.stop(); }
    qint32 FrameTotal() const override { return run.frameTotal; }
    bool WriteFailed() const override { return run.writeFailed; }

    ScriptedRun run;

    // Registers the fake as the decoder every window gets.
    static void install();
    // The fakes alive, oldest first, and the newest one (null if none).
    static QList<FakeMp3Decoder*>& instances();
    static FakeMp3Decoder* latest();
};

}  // namespace cantovel::test
