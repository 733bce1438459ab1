#pragma once

#include "request.h"

#include <QVector>

#include <mutex>

class OrvPluginApi;

/// The host's end of a panel's channel. Answers requests and records them, on any thread.
class RecordingChannel
{
public:
    RecordingChannel() = default;
    virtual ~RecordingChannel() = default;
    Q_DISABLE_COPY(RecordingChannel)

    /// Gives `panel` this channel. The channel must outlive all of its copies.
    void installIn(OrvPluginApi &panel);

    /// The requests since the last call.
    QVector<Request> takeRequests();

    QVariant language = 1; ///< 1 is English

protected:
    /// The answer to `request`, on its thread. This one answers only the setting "language".
    virtual QVariant answer(const Request &request);

private:
    std::mutex m_mutex; ///< guards m_requests
    QVector<Request> m_requests;
};
