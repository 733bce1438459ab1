#pragma once

#include <QWidget>

class CommandChannel;
class QLabel;
class SimulatedCamera;
class TransferQueue;

/// The host's window: the plug-in's panel on the left, what passes over the channel on the right,
/// how the camera does below.
class HostWindow : public QWidget
{
    Q_OBJECT
public:
    /// With a simulated camera the window has controls for it. All three must outlive the window;
    /// `simulated` may be null.
    HostWindow(TransferQueue &queue, CommandChannel &channel, SimulatedCamera *simulated);

    /// What the panel is to be inserted into. The window owns it.
    QWidget *panelContainer() const { return m_panelContainer; }

Q_SIGNALS:
    /// The user asks for the factory defaults.
    void resetRequested();

private:
    void showCondition();
    void showSentence(const QString &sentence);

    const TransferQueue &m_queue;
    QWidget *m_panelContainer;
    QLabel *m_condition;
};
