#include "support/AppTest.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QTimer>

#include "app/Forms.h"
#include "app/ProductionComponents.h"
#include "platform/Components.h"

namespace cantovel::test {

void AppTest::pointEnv(const char* name, const QString& folder) {
    savedEnv_.append({name, qEnvironmentVariableIsSet(name)
                                ? std::optional<QByteArray>(qgetenv(name))
                                : std::nullopt});
    ASSERT_TRUE(QDir().mkpath(folder));
    qputenv(name, QFile::encodeName(folder));
}

void AppTest::SetUp() {
    ASSERT_TRUE(root_.isValid());
    pointEnv("XDG_CONFIG_HOME", root_.path() + QStringLiteral("/config"));
    pointEnv("XDG_DATA_HOME", root_.path() + QStringLiteral("/data"));
    const QString runtime = root_.path() + QStringLiteral("/runtime");
    pointEnv("XDG_RUNTIME_DIR", runtime);
    // Qt and the instance link insist on an owner-only runtime folder.
    QFile::setPermissions(runtime, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    ASSERT_TRUE(QDir().mkpath(tempDir()));

    Components::clear();
    msgBox_ = std::make_shared<FakeMsgBox>();
    clock_ = std::make_shared<FakeClock>();
    registry_ = std::make_shared<RegistryStore>();
    Components::provideService<MsgBox>(msgBox_);
    Components::provideService<Clock>(clock_);
    Components::provideService<Registry>(registry_);
}

void AppTest::useProgramComponents() {
    registerProductionComponents();
    Components::provideService<MsgBox>(msgBox_);
    Components::provideService<Clock>(clock_);
    Components::provideService<Registry>(registry_);
}

void AppTest::unloadTheProgram() {
    UnloadAllForms();
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QTimer::singleShot(0, qApp, &QCoreApplication::quit);
    QCoreApplication::exec();
}

void AppTest::TearDown() {
    // The windows go before the components they use, and what they left for deletion goes
    // before the next test.
    unloadTheProgram();
    Components::clear();
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    for (auto it = savedEnv_.crbegin(); it != savedEnv_.crend(); ++it) {
        if (it->second)
            qputenv(it->first.constData(), *it->second);
        else
            qunsetenv(it->first.constData());
    }
    savedEnv_.clear();
}

}  // namespace cantovel::test
