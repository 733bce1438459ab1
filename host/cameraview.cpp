#include "cameraview.h"

#include "roompainter.h"
#include "simulatedcamera.h"

#include <QPainter>

#include <algorithm>

static constexpr int frameInterval = 40; // in milliseconds

CameraView::CameraView(const SimulatedCamera &camera, QWidget *parent)
    : PixmapDisplay(parent)
    , m_camera(camera)
{
    constexpr QSize size(480, 270); // at 96 dots per inch
    setFixedSize(size * std::max(1.0, logicalDpiX() / 96.0));
    setBackground(Qt::black);
    hideLoading();
    m_frames.setTimerType(Qt::PreciseTimer);
    m_frames.setInterval(frameInterval);
    connect(&m_frames, &QTimer::timeout, this, &CameraView::showFrame);
}

void CameraView::freeze(qint64 time)
{
    m_time = time;
    m_frozen = true;
}

void CameraView::showEvent(QShowEvent *event)
{
    PixmapDisplay::showEvent(event);
    showFrame();
    m_frames.start();
}

void CameraView::hideEvent(QHideEvent *event)
{
    m_frames.stop();
    PixmapDisplay::hideEvent(event);
}

void CameraView::showFrame()
{
    if (!m_frozen)
        m_time += frameInterval;
    const auto people = Room::peopleAt(m_time);
    // Asked for every frame: the camera announces changes of its settings, but not of its faults.
    const auto status = m_camera.status();
    m_view = Room::nextView(m_view, Room::wantedView(people, status).value_or(m_view),
                            m_frozen ? 1000000 : frameInterval, status.at(TrackingProtocol::Mode));
    QPixmap picture;
    if (m_camera.faults().at(Fault::Unplugged) == noFault) {
        picture = QPixmap(size() * devicePixelRatioF());
        QPainter painter(&picture);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.scale(picture.width() / m_view.width(), picture.height() / m_view.height());
        painter.translate(-m_view.topLeft());
        paintRoom(painter, people, m_time);
    }
    setPixmap(picture);
}
