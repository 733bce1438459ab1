#pragma once

#include "request.h"

#include <QVector>

#include <mutex>

class OrvPluginApi;

/// The host's end of a panel's channel. Answers and records requests from any thread.
class RecordingChannel
{
public:
    RecordingChannel() = default;
    virtual ~RecordingChannel() = default;
    Q_DISABLE_COPY(RecordingChannel)

    /// Makes this the channel of `panel`. Must outlive the panel's commandChannel and its copies.
    void installIn(OrvPluginApi &panel);

    /// The requests since the last call.
    QVector<Request> takeRequests();

    QVariant language = 1; ///< 1 is English

protected:
    /// Answers `request`, on the thread that made it. The base class answers only queries for the
    /// setting "language".
    virtual QVariant answer(const Request &request);

private:
    std::mutex m_mutex; ///< guards m_requests
    QVector<Request> m_requests;
};
