#include "app/SubMain.h"

#include "app/AppState.h"
#include "app/Settings.h"
#include "app/Utilities.h"
#include "platform/Components.h"
#include "platform/instance/InstanceLink.h"
#include "platform/msgbox/MsgBox.h"
#include "player/frmMain.h"
#include "shell/DesktopAssociations.h"
#include "shell/MprisService.h"

namespace cantovel {

namespace {
std::unique_ptr<InstanceLink>& runningLink() {
    static std::unique_ptr<InstanceLink> link;
    return link;
}
}  // namespace

InstanceLink* RunningInstanceLink() {
    return runningLink().get();
}

QString CommandLineOf(const QStringList& arguments) {
    // The shell splits an unquoted path with blanks into several arguments; joined again
    // they are the one path the program takes.
    return arguments.mid(1).join(u' ');
}

QString HandOffCommand(const QString& path) {
    // The shell sends the command its file type names, with the path in place of "%1".
    const QString ext = ParsePathParts(path, QStringLiteral("e"));
    QString command = QStringLiteral("\"%1\"");
    if (!ext.isEmpty()) {
        const QString type = ReadRegValue(RegRoot::ClassesRoot, ext, QString(), QString());
        if (!type.isEmpty()) {
            const QString message =
                ReadRegValue(RegRoot::ClassesRoot, type + QStringLiteral("\\Shell\\Open\\ddeexec"),
                             QString(), QString());
            if (!message.isEmpty()) command = message;
        }
    }
    return command.replace(QStringLiteral("%1"), path);
}

int SubMain(const QStringList& arguments) {
    std::unique_ptr<InstanceLink> link = Components::create<InstanceLink>();
    QStringList args = arguments;
    const bool handOff = args.size() > 1 && args[1] == DesktopAssociations::handOffSwitch();
    if (handOff) args.removeAt(1);
    if (link && !link->claim()) {
        // A plain second start never reads its own command line: it restores the first
        // one and ends, whatever happens on the way. A hand-off (the desktop's way of the
        // shell's DDE) sends its path instead.
        const QString command =
            handOff ? HandOffCommand(CommandLineOf(args)) : QStringLiteral("[Restore App]");
        QString error;
        if (!link->execute(command, 200, &error))
            MsgBoxShow(QStringLiteral("An error occurred attempting to communicate with ") +
                       QString::fromLatin1(AppTitle) + QStringLiteral(": ") + error);
        return 0;
    }

    auto* main = new frmMain();
    if (link) {
        // Commands that came before the window are delivered once the event loop runs.
        QObject::connect(link.get(), &InstanceLink::commandReceived, main,
                         &frmMain::Form_LinkExecute);
        runningLink() = std::move(link);
    }
    // With none running, a hand-off starts the program with the path, as a plain start.
    main->Form_Load(CommandLineOf(args));
    StartMprisService();
    return -1;
}

}  // namespace cantovel
