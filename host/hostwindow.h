#pragma once

#include "simulatedcamera.h"

#include <QWidget>

#include <array>

class CommandChannel;
class QComboBox;
class QGroupBox;
class QTableWidget;
struct Transfer;

/// The host's window: the plug-in's panel on the left, the simulated camera and what passes over
/// the channel on the right.
class HostWindow : public QWidget
{
    Q_OBJECT
public:
    /// `camera` and `channel` must outlive the window.
    HostWindow(SimulatedCamera &camera, CommandChannel &channel);

    /// What the panel is to be inserted into. The window owns it.
    QWidget *panelContainer() const { return m_panelContainer; }

    /// Gives the application the dark look that the panel's colours are made for.
    static void applyDarkLook();

Q_SIGNALS:
    /// The user asks for the factory defaults.
    void resetRequested();

private:
    QGroupBox *createCameraGroup();
    QGroupBox *createTransferGroup();
    void showStatus();
    void addTransfer(const Transfer &transfer);

    SimulatedCamera &m_camera;
    QWidget *m_panelContainer;
    std::array<QComboBox *, SimulatedCamera::FieldCount> m_values = {};
    QTableWidget *m_transfers;
};
