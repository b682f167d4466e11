#include "app/SubMain.h"

#include <QCoreApplication>
#include <QPointer>
#include <QQueue>

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

// Commands from later starts are handled one at a time, in the order they came, one an
// event loop turn. One that arrives while another is still being handled (inside a wait of
// its own) waits its turn, so a burst of them never nests, however long it is.
class LinkCommands : public QObject {
  public:
    LinkCommands(InstanceLink* link, frmMain* main) : QObject(link), main_(main) {
        connect(link, &InstanceLink::commandReceived, this, [this](const QString& command) {
            pending_.enqueue(command);
            if (!busy_ && pending_.size() == 1) handleNext();
        });
    }

  private:
    void handleNext() {
        if (busy_ || pending_.isEmpty()) return;
        if (!main_ || main_->unloaded()) {
            pending_.clear();
            return;
        }
        busy_ = true;
        main_->Form_LinkExecute(pending_.dequeue());
        busy_ = false;
        if (!pending_.isEmpty())
            QMetaObject::invokeMethod(this, &LinkCommands::handleNext, Qt::QueuedConnection);
    }

    QPointer<frmMain> main_;
    QQueue<QString> pending_;
    bool busy_ = false;
};
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
        new LinkCommands(link.get(), main);
        runningLink() = std::move(link);
        // The instance ends with its window: a start after that runs on its own.
        QObject::connect(main, &QObject::destroyed, [] { runningLink().reset(); });
    }
    // With none running, a hand-off starts the program with the path, as a plain start.
    main->Form_Load(CommandLineOf(args));
    if (main->unloaded()) {
        // Closed inside a wait of its load: the exit it asked for found no event loop to
        // end, so the program ends here, and the next start finds no instance running.
        runningLink().reset();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        return 0;
    }
    StartMprisService();
    return -1;
}

}  // namespace cantovel
