#include "session.h"

#include "orvpluginapi.h"
#include "pluginfile.h"
#include "simulatedcamera.h"

#include <QBoxLayout>

Session::Session(const std::shared_ptr<Camera> &camera, Camera::Access access,
                 const PluginFile &plugin, int language)
    : m_simulated(dynamic_cast<SimulatedCamera *>(camera.get()))
    , m_queue(camera, access)
    , m_channel(m_queue, language)
    , m_api(plugin.api)
    , m_instance(plugin.object)
{
    m_queue.prefetchStatus();
}

Session::~Session()
{
    end();
}

void Session::showPanelIn(QWidget *container)
{
    m_placeholder = new QLabel(tr("Opening %1").arg(m_queue.cameraName()), container);
    m_placeholder->setWordWrap(true);
    qobject_cast<QBoxLayout *>(container->layout())->insertWidget(0, m_placeholder);
    // The first report is the end of the first read, or the camera was refused. Queued, because the
    // panel makes requests, whose reports must come after all earlier ones.
    connect(&m_channel, &CommandChannel::transferred, this, &Session::createPanel,
            Qt::QueuedConnection);
}

void Session::createPanel()
{
    // Several reports may have queued several calls.
    if (!disconnect(&m_channel, &CommandChannel::transferred, this, &Session::createPanel))
        return;
    const CameraCondition condition = m_queue.condition();
    if (condition.state == CameraCondition::Refused && !m_simulated) {
        Q_EMIT refused(condition.refusal);
    } else if (m_placeholder && m_instance) {
        QWidget *const container = m_placeholder->parentWidget();
        delete m_placeholder;
        m_api->commandChannel = [this](int kind, const QVariant &record) {
            return m_channel.request(kind, record);
        };
        m_api->insertWidget(container);
        Q_EMIT panelCreated();
    }
}

void Session::resetToDefault()
{
    if (m_instance)
        m_api->resetToDefault();
}

void Session::end()
{
    m_queue.finish();
    delete m_instance;
}
