#include "app/SubMain.h"

#include "app/AppState.h"
#include "platform/Components.h"
#include "platform/instance/InstanceLink.h"
#include "platform/msgbox/MsgBox.h"
#include "player/frmMain.h"

namespace cantovel {

namespace {
std::unique_ptr<InstanceLink>& runningLink() {
    static std::unique_ptr<InstanceLink> link;
    return link;
}
}  // namespace

InstanceLink* RunningInstanceLink() { return runningLink().get(); }

QString CommandLineOf(const QStringList& arguments) {
    // The shell splits an unquoted path with blanks into several arguments; joined again
    // they are the one path the program takes.
    return arguments.mid(1).join(u' ');
}

int SubMain(const QStringList& arguments) {
    std::unique_ptr<InstanceLink> link = Components::create<InstanceLink>();
    if (link && link->otherInstanceRunning()) {
        // The second start never reads its own command line: it restores the first one
        // and ends, whatever happens on the way.
        QString error;
        if (!link->execute(QStringLiteral("[Restore App]"), 200, &error))
            MsgBoxShow(QStringLiteral("An error occurred attempting to communicate with ") +
                       QString::fromLatin1(AppTitle) + QStringLiteral(": ") + error);
        return 0;
    }

    auto* main = new frmMain();
    if (link) {
        link->listen();
        QObject::connect(link.get(), &InstanceLink::commandReceived, main,
                         &frmMain::Form_LinkExecute);
        runningLink() = std::move(link);
    }
    main->Form_Load(CommandLineOf(arguments));
    return -1;
}

}  // namespace cantovel
