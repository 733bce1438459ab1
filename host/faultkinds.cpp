#include "faultkinds.h"

#include "errortexts.h"
#include "trackingprotocol.h"

#include <QStringList>

#include <cerrno>

const std::array<FaultKind, Fault::Count> faultKinds = {{
    {"delay", "Delay", FaultKind::Number, 10000, " ms",
     "Each transfer takes this long.\nA good panel stays usable, sends the last choice of every "
     "setting, and no control jumps back."},
    {"errno", "Error", FaultKind::ErrorName, 0, "",
     "Each transfer fails with this error.\nA good panel stays as it is; its host reports the "
     "error "
     "once and reads less often."},
    {"short", "Short block", FaultKind::Number, TrackingProtocol::blockLength - 1, " bytes",
     "The status block ends after this many bytes.\nA good panel ignores the settings that are "
     "missing."},
    {"no-answer", "No answer", FaultKind::Nothing, 0, "",
     "The camera answers neither reads nor commands.\nA good panel is collapsed at the start; "
     "later "
     "it stays as it is and stays usable."},
    {"random", "Random", FaultKind::Nothing, 0, "",
     "Every status block holds random bytes.\nA good panel ignores unknown values, follows the "
     "others, and sends nothing back."},
    {"refuse-writes", "Refuse writes", FaultKind::Nothing, 0, "",
     "The camera reports its status and refuses every command.\nA good panel follows the status "
     "and does not repeat the command."},
    {"unplugged", "Unplugged", FaultKind::Nothing, 0, "",
     "The camera is disconnected until you clear this.\nA good panel stays as it is. When the "
     "camera is back, it follows the camera and sends nothing by itself."},
    {"changes-itself", "Changes itself", FaultKind::Nothing, 0, "",
     "The camera changes a setting now and then, as with a remote control.\nA good panel follows "
     "and sends nothing back."},
}};

const std::array<int, 8> faultErrors = {EIO,    EPIPE,   EPROTO,    EBUSY,
                                        EINVAL, ENOBUFS, ETIMEDOUT, ENODEV};

QString addFault(Faults &faults, const QString &text)
{
    const int equals = text.indexOf('=');
    const QString name = text.left(equals);
    const QString value = equals < 0 ? QString() : text.mid(equals + 1);
    QStringList names;
    for (int i = 0; i < Fault::Count; ++i) {
        const FaultKind &kind = faultKinds.at(i);
        names += kind.name;
        if (names.last() != name)
            continue;
        if (kind.takes == FaultKind::Number) {
            bool ok = false;
            const int number = value.toInt(&ok);
            if (!ok || number < 0 || number > kind.maximum)
                return QString("%1=0..%2").arg(name).arg(kind.maximum);
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
            return "errno= one of " + errors.join(", ");
        }
        if (equals >= 0)
            return name + " without a value";
        faults.at(i) = 1;
        return {};
    }
    return "one of " + names.join(", ");
}
