#pragma once
// Most parsers of the program read files, so a fuzz input is written to a file of a
// private folder before each run.

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QString>
#include <QTemporaryDir>
#include <cstdint>
#include <cstdlib>

namespace cantovel::fuzz {

inline const QString& scratchFolder() {
    static QTemporaryDir dir(QDir::tempPath() + QStringLiteral("/cantovel-fuzz-XXXXXX"));
    static const QString path = dir.path();
    return path;
}

// Writes the input to `name` in the scratch folder and returns the file's path.
inline QString writeInput(const QString& name, const uint8_t* data, size_t size) {
    const QString path = scratchFolder() + QLatin1Char('/') + name;
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate)) std::abort();
    file.write(reinterpret_cast<const char*>(data), qint64(size));
    return path;
}

// A broken promise of a parser: the fuzzer keeps the input that caused it.
inline void require(bool holds) {
    if (!holds) std::abort();
}

}  // namespace cantovel::fuzz
