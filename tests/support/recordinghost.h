#pragma once

#include "orvpluginapi.h"

#include <QStringList>

/// A host's end of the channel, with a camera behind it. Every record is checked to the last byte
/// and written down in a word: "language", "read", "notice", or "04=1" for a command and its value.
class RecordingHost
{
public:
    QVariant language = 1;
    QByteArray status = QByteArray::fromHex("0001000100"); ///< the camera's bytes
    quint64 length = 60;                                   ///< what an answer claims to hold
    QVariant foreignAnswer;                                ///< given to a read if valid
    std::function<void()> meanwhile;                       ///< called in each request, if set
    QStringList traffic;

    /// What crossed since the last call, without what was asked.
    QStringList takeSent();

    void installIn(OrvPluginApi &plugin);

private:
    QVariant answer(int request, const QVariant &record);
};
