#include "platform/dialogs/FileDialogs.h"

#include "platform/Components.h"

namespace cantovel {

FileDialogs& FileDialogs::get() {
    return Components::service<FileDialogs>();
}

QStringList qtNameFilters(const QString& classicFilter) {
    QStringList out;
    const QStringList parts = classicFilter.split(QLatin1Char('|'));
    // Description and pattern come in pairs; a description left without its pattern is
    // dropped, as the classic dialog drops it.
    for (int i = 0; i + 1 < parts.size(); i += 2) {
        const QString description = parts[i].trimmed();
        QStringList patterns;
        for (const QString& p : parts[i + 1].split(QLatin1Char(';'), Qt::SkipEmptyParts))
            if (!p.trimmed().isEmpty()) patterns << p.trimmed();
        if (patterns.isEmpty()) continue;
        // Qt reads the patterns from the last parentheses, so ours always come last even
        // when the description carries its own.
        out << description + QStringLiteral(" (") + patterns.join(QLatin1Char(' ')) +
                   QLatin1Char(')');
    }
    return out;
}

}  // namespace cantovel
