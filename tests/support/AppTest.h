#pragma once
// Base fixture for tests that run the program's logic: each test gets its own
// configuration, data and runtime folders (so the settings store and the instance link
// start empty), and fakes for message boxes and time. Afterwards every window is unloaded
// and the components are cleared.

#include <gtest/gtest.h>

#include <QByteArray>
#include <QDir>
#include <QList>
#include <QString>
#include <QTemporaryDir>
#include <memory>
#include <optional>

#include "platform/registry/RegistryStore.h"
#include "support/FakeClock.h"
#include "support/FakeMsgBox.h"
#include "support/QtPrinters.h"

namespace cantovel::test {

class AppTest : public ::testing::Test {
  protected:
    void SetUp() override;
    void TearDown() override;

    // The program's own components and windows, but for the message boxes, time and
    // settings store above.
    void useProgramComponents();

    FakeMsgBox& msgBox() { return *msgBox_; }
    FakeClock& clock() { return *clock_; }
    RegistryStore& registry() { return *registry_; }
    // A fresh folder for the test's own files.
    QString tempDir() const { return root_.path() + QStringLiteral("/files"); }
    // Unloads every window of a program that ran through its start. The main window's
    // unload ends the application's loop, which with none running would end every later
    // loop of this process at once: a loop of its own takes it.
    static void unloadTheProgram();

  private:
    void pointEnv(const char* name, const QString& folder);

    QTemporaryDir root_{QDir::tempPath() + QStringLiteral("/cantovel-test-XXXXXX")};
    QList<std::pair<QByteArray, std::optional<QByteArray>>> savedEnv_;
    std::shared_ptr<FakeMsgBox> msgBox_;
    std::shared_ptr<FakeClock> clock_;
    std::shared_ptr<RegistryStore> registry_;
};

}  // namespace cantovel::test
