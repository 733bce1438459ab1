#pragma once

#include "trackingprotocol.h"

#include <QGroupBox>

#include <array>

class QComboBox;
class QGridLayout;
class SimulatedCamera;

/// Shows the simulated camera's settings and faults and lets the user change them.
class CameraPanel : public QGroupBox
{
    Q_OBJECT
public:
    /// `camera` must outlive the panel.
    explicit CameraPanel(SimulatedCamera &camera);

private:
    void addFaults(QGridLayout &grid);
    void showStatus();

    SimulatedCamera &m_camera;
    std::array<QComboBox *, TrackingProtocol::FieldCount> m_values = {};
};
