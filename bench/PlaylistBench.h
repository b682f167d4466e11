#pragma once
// What the playlist benchmarks share: the services the main window and the editor ask
// for, and a Google Benchmark entry that runs inside a Qt application.
#include <benchmark/benchmark.h>

#include <QApplication>
#include <memory>

#include "platform/Components.h"
#include "platform/clock/QtClock.h"
#include "platform/msgbox/QtMsgBox.h"
#include "platform/registry/RegistryStore.h"

namespace cantovel::bench {

inline void provideWindowServices(const QString& settingsFolder) {
    Components::provideService<Registry>(std::make_shared<RegistryStore>(settingsFolder));
    Components::provideService<Clock>(std::make_shared<QtClock>());
    Components::provideService<MsgBox>(std::make_shared<QtMsgBox>());
}

inline int runInQtApplication(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}

}  // namespace cantovel::bench
