// Cost of reading one setting: the store is parsed afresh on every read, so this is the
// price every reader pays, inside playback paths too.
#include <benchmark/benchmark.h>

#include <QFile>
#include <QTemporaryDir>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include "app/Settings.h"
#include "platform/Components.h"
#include "platform/registry/RegistryStore.h"

using namespace cantovel;

namespace {

constexpr int SettingCount = 300;

// A store like a well-used installation's: a few hundred settings and some other keys.
struct Store {
    QTemporaryDir dir;
    Store() {
        auto store = std::make_shared<RegistryStore>(dir.path());
        QByteArray text("REGEDIT4\n\n");
        text += "[HKEY_CURRENT_USER\\Software]\n\n[HKEY_CURRENT_USER\\Software\\Brightfen]\n\n";
        text += "[HKEY_CURRENT_USER\\Software\\Brightfen\\Cantovel]\n\n";
        text += "[HKEY_CURRENT_USER\\Software\\Brightfen\\Cantovel\\Settings]\n";
        for (int i = 0; i < SettingCount; ++i)
            text += "\"Setting " + QByteArray::number(i) + "\"=\"/home/user/Music/Album " +
                    QByteArray::number(i) + "/Track.mp3\"\n";
        text += "\n[HKEY_CURRENT_USER\\Software\\Brightfen\\Cantovel\\DAC]\n";
        for (int i = 0; i < 20; ++i)
            text += "\"Drive " + QByteArray::number(i) + "\"=dword:0000000" +
                    QByteArray::number(i % 10) + "\n";
        QFile f(store->fileFor(RegRoot::CurrentUser));
        if (!f.open(QIODevice::WriteOnly) || f.write(text) != text.size()) std::abort();
        f.close();
        Components::provideService<Registry>(store);
        if (ReadAppSetting("Setting 250", "") != "/home/user/Music/Album 250/Track.mp3") {
            std::fprintf(stderr, "the benchmark store does not read back\n");
            std::abort();
        }
    }
};

Store& store() {
    static Store s;
    return s;
}

void BM_ReadAppSetting(benchmark::State& state) {
    store();
    for (auto _ : state) benchmark::DoNotOptimize(ReadAppSetting("Setting 250", "", true, true));
}
BENCHMARK(BM_ReadAppSetting)->Unit(benchmark::kMicrosecond);

// A missing value is the longest search: every key and value is looked at.
void BM_ReadMissingSetting(benchmark::State& state) {
    store();
    for (auto _ : state) benchmark::DoNotOptimize(ReadAppSetting("Missing", "0", true, true));
}
BENCHMARK(BM_ReadMissingSetting)->Unit(benchmark::kMicrosecond);

}  // namespace

BENCHMARK_MAIN();
