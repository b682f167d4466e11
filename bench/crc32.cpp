// CRC-32 of a large file from the page cache: our file CRC (32767-byte blocks with a
// progress report each) against zlib's crc32 over the same file read in 1 MiB pieces.
#include <benchmark/benchmark.h>
#include <zlib.h>

#include <QDir>
#include <QFile>
#include <QRandomGenerator>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "tags/CCRC32.h"

using namespace cantovel;

namespace {

constexpr qint64 FileSize = 256LL * 1024 * 1024;

struct LargeFile {
    QString path = QDir::temp().filePath(QStringLiteral("cantovel-bench-crc32.bin"));
    LargeFile() {
        QFile f(path);
        if (!f.open(QIODevice::WriteOnly | QIODevice::Truncate)) std::abort();
        std::vector<quint32> chunk(1 << 18);
        QRandomGenerator gen(7);
        for (qint64 written = 0; written < FileSize; written += qint64(chunk.size() * 4)) {
            gen.fillRange(chunk.data(), chunk.size());
            if (f.write(reinterpret_cast<const char*>(chunk.data()), qint64(chunk.size() * 4)) < 0)
                std::abort();
        }
        f.close();
    }
    ~LargeFile() { QFile::remove(path); }
};

LargeFile& largeFile() {
    static LargeFile file;
    return file;
}

quint32 zlibFileCrc(const QString& path) {
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly)) std::abort();
    std::vector<char> buffer(1 << 20);
    uLong crc = crc32(0L, Z_NULL, 0);
    for (qint64 n; (n = f.read(buffer.data(), qint64(buffer.size()))) > 0;)
        crc = crc32(crc, reinterpret_cast<const Bytef*>(buffer.data()), uInt(n));
    return quint32(crc);
}

void BM_ZlibCrc32File(benchmark::State& state) {
    const QString path = largeFile().path;
    zlibFileCrc(path);  // into the page cache
    for (auto _ : state) benchmark::DoNotOptimize(zlibFileCrc(path));
    state.SetBytesProcessed(state.iterations() * FileSize);
}
BENCHMARK(BM_ZlibCrc32File)->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_CCRC32File(benchmark::State& state) {
    const QString path = largeFile().path;
    CCRC32 crc;
    crc.setInputFileName(path);
    // The file's size is a multiple of 4, never 32767 * k + 1: the results agree.
    if (crc.GetCRCFromFile() != zlibFileCrc(path)) {
        std::fprintf(stderr, "CCRC32 and zlib disagree\n");
        std::abort();
    }
    int reports = 0;
    QObject::connect(&crc, &CCRC32::Progress, [&](float) { ++reports; });
    for (auto _ : state) benchmark::DoNotOptimize(crc.GetCRCFromFile());
    state.SetBytesProcessed(state.iterations() * FileSize);
    state.counters["reports"] = double(reports) / double(state.iterations());
}
BENCHMARK(BM_CCRC32File)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace

BENCHMARK_MAIN();
