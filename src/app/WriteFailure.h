#pragma once
// The one text of an output that could not be written (a conversion, a playlist): which
// file, and why.

#include <QString>

namespace cantovel {

inline QString writeFailureText(const QString& path, const QString& reason) {
    return QStringLiteral("Unable to write file:  ") + path + QStringLiteral("\r\n\r\n") +
           (reason.isEmpty() ? QStringLiteral("The disk refused the data") : reason) + u'.';
}

}  // namespace cantovel
