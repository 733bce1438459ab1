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
    , m_plugin(plugin.path)
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
    m_container = container;
    waitForRead(tr("Opening %1").arg(m_queue.cameraName()));
    // Queued, because panels make requests, whose reports must come after all earlier ones. A panel
    // must not be deleted during its request either.
    connect(&m_channel, &CommandChannel::transferred, this, &Session::takeReport,
            Qt::QueuedConnection);
}

void Session::renewPanel()
{
    if (!m_instance || m_placeholder || m_queue.condition().state == CameraCondition::Refused)
        return;
    delete m_instance;
    const PluginFile plugin = PluginFile::load(m_plugin);
    m_instance = plugin.object;
    m_api = plugin.api;
    Q_EMIT m_channel.transferred({Transfer::Event, 0, 0, {}, "new panel", Transfer::Succeeded});
    waitForRead(tr("Reading %1").arg(m_queue.cameraName()));
    m_queue.prefetchStatus();
}

void Session::waitForRead(const QString &text)
{
    m_placeholder = new QLabel(text, m_container);
    m_placeholder->setWordWrap(true);
    qobject_cast<QBoxLayout *>(m_container->layout())->insertWidget(0, m_placeholder);
}

void Session::takeReport(const Transfer &transfer)
{
    const bool isRefused = m_queue.condition().state == CameraCondition::Refused;
    if (m_placeholder && (transfer.isStatusRead() || isRefused))
        createPanel();
    else if (transfer.direction == Transfer::Event &&
             transfer.meaning == TransferQueue::backMeaning)
        renewPanel();
}

void Session::createPanel()
{
    const CameraCondition condition = m_queue.condition();
    if (condition.state == CameraCondition::Refused && !m_simulated && !m_hadPanel) {
        disconnect(&m_channel, nullptr, this, nullptr);
        Q_EMIT refused(condition.refusal);
    } else if (m_instance) {
        delete m_placeholder;
        m_hadPanel = true;
        m_api->commandChannel = [this](int kind, const QVariant &record) {
            return m_channel.request(kind, record);
        };
        m_api->insertWidget(m_container);
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
