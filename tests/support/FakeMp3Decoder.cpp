#include "support/FakeMp3Decoder.h"

namespace cantovel::test {

FakeMp3Decoder::FakeMp3Decoder(QObject* parent)
    : Mp3Decoder(parent),
      TrackedFake(this),
      run([this](qint32 value) { emit DecodeProgress(value); }, [this] { emit DecodeDone(); }) {}

qint16 FakeMp3Decoder::SetFiles(const QString& input, const QString& output) {
    clearError();
    const ScriptedRun::Answer answer = run.answerFor(input);
    run.setFiles(input, output, answer.result == FilesAccepted && !answer.raises);
    if (answer.raises) raise(QStringLiteral("scripted refusal of %1").arg(input));
    return answer.result;
}

void FakeMp3Decoder::StartDecode() {
    clearError();
    run.start();
}

}  // namespace cantovel::test
