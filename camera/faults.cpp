#include "faults.h"

#include "errornames.h"
#include "trackingprotocol.h"

#include <QStringList>

#include <cerrno>

const std::array<FaultKind, Fault::Count> faultKinds = {{
    {"delay", "Delay", FaultKind::Number, 10000, " ms",
     "Each transfer takes this long.\nA good panel stays usable, sends the last choice of every "
     "setting, and no control jumps back."},
    {"errno", "Error", FaultKind::ErrorName, 0, "",
     "Each transfer fails with this error.\nA good panel keeps what it shows; its host says what "
     "fails, once, and asks less often."},
    {"short", "Short block", FaultKind::Number, TrackingProtocol::blockLength - 1, " bytes",
     "The status block ends after this many bytes.\nA good panel takes nothing from bytes that did "
     "not come."},
    {"no-answer", "No answer", FaultKind::Nothing, 0, "",
     "The camera gives no status and obeys no command.\nA good panel folds up at the start; later "
     "it keeps what it shows and stays usable."},
    {"random", "Random", FaultKind::Nothing, 0, "",
     "Every status block holds random bytes.\nA good panel passes over values that mean nothing, "
     "follows the others, and sends nothing back."},
    {"refuse-writes", "Refuse writes", FaultKind::Nothing, 0, "",
     "The camera reports its status and refuses every command.\nA good panel follows the status "
     "that it reads, and does not repeat the command."},
    {"unplugged", "Unplugged", FaultKind::Nothing, 0, "",
     "The camera is gone until this is cleared.\nA good panel keeps what it shows. When the camera "
     "is back it follows it and sends nothing by itself."},
    {"changes-itself", "Changes itself", FaultKind::Nothing, 0, "",
     "The camera changes a setting now and then, as with a remote control.\nA good panel follows, "
     "and sends nothing back."},
}};

const std::array<int, 8> faultErrors = {EIO,    EPIPE,   EPROTO,    EBUSY,
                                        EINVAL, ENOBUFS, ETIMEDOUT, ENODEV};

QString addFault(Faults &faults, const QString &text)
{
    const int equals = text.indexOf(QLatin1Char('='));
    const QString name = text.left(equals);
    const QString value = equals < 0 ? QString() : text.mid(equals + 1);
    QStringList names;
    for (int i = 0; i < Fault::Count; ++i) {
        const FaultKind &kind = faultKinds.at(i);
        names += QString::fromLatin1(kind.name);
        if (names.last() != name)
            continue;
        if (kind.takes == FaultKind::Number) {
            bool ok = false;
            const int number = value.toInt(&ok);
            if (!ok || number < 0 || number > kind.maximum)
                return QStringLiteral("%1=0..%2").arg(name).arg(kind.maximum);
            faults.at(i) = number;
            return {};
        }
        if (kind.takes == FaultKind::ErrorName) {
            QStringList errors;
            for (const int error : faultErrors) {
                errors += errorName(error);
                if (errors.last() == value) {
                    faults.at(i) = error;
                    return {};
                }
            }
            return QStringLiteral("errno= one of ") + errors.join(QStringLiteral(", "));
        }
        if (equals >= 0)
            return name + QStringLiteral(" without a value");
        faults.at(i) = 1;
        return {};
    }
    return QStringLiteral("one of ") + names.join(QStringLiteral(", "));
}
