#include "recordingchannel.h"

#include "orvpluginapi.h"

#include <QCoreApplication>
#include <QThread>

void RecordingChannel::installIn(OrvPluginApi &panel)
{
    panel.commandChannel = [this](int kind, const QVariant &record) {
        const bool onGuiThread = QThread::currentThread() == QCoreApplication::instance()->thread();
        const Request request{kind, record, onGuiThread};
        {
            const std::lock_guard<std::mutex> lock(m_mutex);
            m_requests += request;
        }
        return answer(request);
    };
}

QVector<Request> RecordingChannel::takeRequests()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    QVector<Request> requests;
    requests.swap(m_requests);
    return requests;
}

QVariant RecordingChannel::answer(const Request &request)
{
    const bool asksForLanguage = request.kind == ChannelRequest::Setting &&
                                 request.record.value<SettingData>().name == "language";
    return asksForLanguage ? language : QVariant();
}
