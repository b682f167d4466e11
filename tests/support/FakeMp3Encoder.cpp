#include "support/FakeMp3Encoder.h"

namespace cantovel::test {

FakeMp3Encoder::FakeMp3Encoder(QObject* parent)
    : Mp3Encoder(parent),
      TrackedFake(this),
      run([this](qint32 value) { emit EncodeProgress(value); }, [this] { emit EncodeDone(); }) {}

qint16 FakeMp3Encoder::SetFiles(const QString& input, const QString& output) {
    clearError();
    const ScriptedRun::Answer answer = run.answerFor(input);
    run.setFiles(input, output, answer.result == FilesAccepted && !answer.raises);
    if (answer.raises) raise(QStringLiteral("scripted refusal of %1").arg(input));
    return answer.result;
}

void FakeMp3Encoder::Start() {
    clearError();
    startSettings.append({Bitrate(), DownMix()});
    run.start();
}

}  // namespace cantovel::test
