#pragma once

#include "pixmapdisplay.h"
#include "room.h"

#include <QTimer>

class SimulatedCamera;

/// The simulated camera's picture: the part of a drawn room that its settings ask for. Black while
/// the camera is unplugged. Time in the room stands still while the view is hidden or minimised.
class CameraView : public PixmapDisplay
{
    Q_OBJECT
public:
    /// `camera` must outlive the view.
    explicit CameraView(const SimulatedCamera &camera, QWidget *parent = nullptr);

    /// For reproducible pictures: stops time in the room at `time` milliseconds. From now on, the
    /// camera takes no time to move.
    void freeze(qint64 time);

protected:
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    void showFrame();

    const SimulatedCamera &m_camera;
    QTimer m_frames;
    qint64 m_time = 0;
    bool m_frozen = false;
    QRectF m_view = Room::whole;
};
