// The running instance's link, spoken to by a hostile peer: whatever bytes arrive, a line
// is acknowledged and handed on as one command, anything else is dropped, and the link
// goes on answering the next start of the program.
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QLocalSocket>

#include "FuzzInput.h"
#include "app/FileNames.h"
#include "platform/instance/LocalInstanceLink.h"

using namespace cantovel;

namespace {

QStringList received;
LocalInstanceLink* running = nullptr;

// Runs events until `done` holds or two seconds have passed.
template <typename Done>
bool settle(Done done) {
    QElapsedTimer clock;
    clock.start();
    while (!done() && clock.elapsed() < 2000)
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents, 10);
    return done();
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv) {
    static QCoreApplication app(*argc, *argv);
    running = new LocalInstanceLink(fuzz::scratchFolder(), QStringLiteral("link"));
    fuzz::require(running->listen());
    QObject::connect(running, &InstanceLink::commandReceived,
                     [](const QString& command) { received << command; });
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    received.clear();
    const QByteArray bytes(reinterpret_cast<const char*>(data), qsizetype(size));
    const qsizetype end = bytes.indexOf('\n');
    QLocalSocket peer;
    peer.connectToServer(running->socketPath());
    fuzz::require(peer.waitForConnected(2000));
    peer.write(bytes);
    peer.flush();
    QStringList expected;
    if (end >= 0) {
        // A line: the link answers and hangs up.
        fuzz::require(settle([&] { return peer.state() == QLocalSocket::UnconnectedState; }));
        fuzz::require(peer.readAll() == "ACK\n");
        QByteArray line = bytes.left(end);
        if (line.endsWith('\r')) line.chop(1);
        // A command is a file name as often as not: its bytes come through as they are.
        expected << NameFromBytes(line);
    } else {
        peer.disconnectFromServer();
    }

    // The next start of the program still gets through.
    LocalInstanceLink next(fuzz::scratchFolder(), QStringLiteral("link"));
    QString error;
    fuzz::require(next.execute(QStringLiteral("[Restore App]"), 2000, &error));
    expected << QStringLiteral("[Restore App]");
    fuzz::require(settle([&] { return received.size() >= expected.size(); }));
    fuzz::require(received == expected);
    return 0;
}
