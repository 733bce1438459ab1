#pragma once

#include "request.h"

#include <QVector>

#include <atomic>
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

    /// Call when the panel has been destroyed: its further requests get `afterEnd`.
    void noteEnd() { m_livingPanel = 0; }

    /// The requests since the last call.
    QVector<Request> takeRequests();

    QVariant language = 1; ///< 1 is English

protected:
    /// The answer to `request`, on its thread. This one answers only the setting "language".
    virtual QVariant answer(const Request &request);

private:
    int m_panels = 0;
    std::atomic<int> m_livingPanel = 0; ///< counted from 1; 0 if there is none
    std::mutex m_mutex;                 ///< guards m_requests
    QVector<Request> m_requests;
};
