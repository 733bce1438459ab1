#pragma once

#include <QWidget>

class CommandChannel;
class QPushButton;
class SimulatedCamera;
class StatusLine;
class TransferQueue;

/// The host's window: the plug-in's panel on the left, the trace of the channel on the right, the
/// camera's condition at the bottom.
class HostWindow : public QWidget
{
    Q_OBJECT
public:
    /// All arguments must outlive the window. Shows controls for `simulated` unless it is null.
    HostWindow(TransferQueue &queue, CommandChannel &channel, SimulatedCamera *simulated);

    /// Insert the panel here. The window owns it.
    QWidget *panelContainer() const { return m_panelContainer; }

    StatusLine &statusLine() const { return *m_status; }

Q_SIGNALS:
    /// The user pressed "Reset to defaults".
    void resetRequested();

    /// The user pressed "Read again".
    void readAgainRequested();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QWidget *makeLeftColumn(double scale);
    void putPanelFirst();

    QWidget *m_panelContainer;
    QPushButton *m_reset;
    StatusLine *m_status;
};
