#include "faultkinds.h"

#include "errortexts.h"

#include <QCoreApplication>
#include <QStringList>

#include <cerrno>

const std::array<FaultKind, Fault::Count> faultKinds = {{
    {"delay=0..10000", QT_TRANSLATE_NOOP("FaultKind", "Delay"), " ms",
     QT_TRANSLATE_NOOP("FaultKind", "Each transfer takes this long.\nA good panel stays usable, "
                                    "its last choice of each setting "
                                    "reaches the camera, and no control jumps back.")},
    {"errno=EIO|EPIPE|EPROTO|EBUSY|EINVAL|ENOBUFS|ETIMEDOUT|ENODEV",
     QT_TRANSLATE_NOOP("FaultKind", "Error"), nullptr,
     QT_TRANSLATE_NOOP(
         "FaultKind",
         "Each transfer fails with this error.\nA good panel does not change; its host shows the "
         "error and reads less often.")},
    {"short=0..59", QT_TRANSLATE_NOOP("FaultKind", "Short block"), " bytes",
     QT_TRANSLATE_NOOP(
         "FaultKind",
         "The status block ends after this many bytes.\nA good panel ignores missing settings, or "
         "takes them as 0.")},
    {"no-answer", QT_TRANSLATE_NOOP("FaultKind", "No answer"), nullptr,
     QT_TRANSLATE_NOOP(
         "FaultKind",
         "The camera answers neither reads nor commands.\nAt the start a good panel shows only its "
         "title row; later it does not change and stays usable.")},
    {"random", QT_TRANSLATE_NOOP("FaultKind", "Random"), nullptr,
     QT_TRANSLATE_NOOP("FaultKind", "Each status block contains random bytes.\nA good panel "
                                    "ignores unknown values, follows the "
                                    "others, and sends nothing back.")},
    {"refuse-writes", QT_TRANSLATE_NOOP("FaultKind", "Refuse writes"), nullptr,
     QT_TRANSLATE_NOOP("FaultKind", "The camera reports its status and refuses every command.\nA "
                                    "good panel follows the status "
                                    "and does not repeat the commands.")},
    {"unplugged", QT_TRANSLATE_NOOP("FaultKind", "Unplugged"), nullptr,
     QT_TRANSLATE_NOOP(
         "FaultKind",
         "The camera is disconnected until you clear this.\nA good panel does not change. When the "
         "camera is back, the panel follows it and sends nothing by itself.")},
    {"changes-itself", QT_TRANSLATE_NOOP("FaultKind", "Changes itself"), nullptr,
     QT_TRANSLATE_NOOP(
         "FaultKind",
         "The camera changes a setting now and then, as if by its remote control.\nA good panel "
         "follows and sends nothing back.")},
}};

QVector<int> faultChoices(int fault)
{
    switch (fault) {
    case Fault::Delay:
        return {20, 100, 500, 2000, 10000};
    case Fault::Error:
        return {EIO, EPIPE, EPROTO, EBUSY, EINVAL, ENOBUFS, ETIMEDOUT, ENODEV};
    case Fault::Short:
        return {0, 1, 2, 3, 4, 5, 59};
    default:
        return {1};
    }
}

QString faultValueName(int fault, int value)
{
    if (value == noFault)
        return "off";
    if (fault == Fault::Error)
        return errorName(value);
    const char *const unit = faultKinds.at(fault).unit;
    return unit ? QString::number(value) + unit : "on";
}

QString faultUsage()
{
    QStringList usages;
    for (const FaultKind &kind : faultKinds)
        usages += kind.usage;
    return usages.join(", ");
}

QString addFault(Faults &faults, const QString &text)
{
    const QString value = text.section('=', 1);
    for (int fault = 0; fault < Fault::Count; ++fault) {
        const FaultKind &kind = faultKinds.at(fault);
        if (QString(kind.usage).section('=', 0, 0) != text.section('=', 0, 0))
            continue;
        const QVector<int> choices = faultChoices(fault);
        bool isNumber = false;
        const int number = value.toInt(&isNumber);
        if (kind.unit && isNumber && number >= 0 && number <= choices.last()) {
            faults.at(fault) = number;
            return {};
        }
        for (const int choice : choices) {
            if (!kind.unit && value == (fault == Fault::Error ? errorName(choice) : "")) {
                faults.at(fault) = choice;
                return {};
            }
        }
        return kind.usage;
    }
    return "one of " + faultUsage();
}
