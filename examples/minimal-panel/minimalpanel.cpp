// A minimal settings panel: one switch that turns the camera's tracking on and off, and follows
// changes that were made elsewhere.

#include "accessibility.h"
#include "orvpluginapi.h"
#include "panelplacement.h"
#include "switchbutton.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QTimer>

class MinimalPanel : public QWidget, public OrvPluginApi
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "com.talsen.OrvPluginApi")
    Q_INTERFACES(OrvPluginApi)

public:
    QString name() override { return QStringLiteral("minimal_panel"); }

    void insertWidget(QWidget *container) override
    {
        const SettingData language{QStringLiteral("language"), 0};
        const bool english =
            commandChannel(ChannelRequest::Setting, QVariant::fromValue(language)).toInt() == 1;
        const QString text = english ? QStringLiteral("Tracking") : QStringLiteral("跟踪");
        // Not setFixedSize() of SwitchButton: it suppresses the next signal.
        toggle->setMinimumSize(44, 22);
        toggle->setMaximumSize(44, 22);
        makeAccessible(*toggle, text);
        auto *const row = new QHBoxLayout(this);
        row->addWidget(new QLabel(text), 1);
        row->addWidget(toggle);

        PanelPlacement::insertFirst(this, container);

        connect(toggle, &SwitchButton::onValueChanged, this, &MinimalPanel::sendTracking);
        // A single shot, started after each answer, so that reads do not pile up behind a slow
        // camera.
        poll->setSingleShot(true);
        poll->setInterval(1000);
        connect(poll, &QTimer::timeout, this, &MinimalPanel::readTracking);
        readTracking();
    }

private:
    void sendTracking(int on)
    {
        const ExtensionUnit command{true, 7, {0xFF, 0x53, 0x05, 0x04, 1, quint8(on)}, 60};
        commandChannel(ChannelRequest::Extension, QVariant::fromValue(command));
    }

    void readTracking()
    {
        ExtensionUnit request;
        request.selector = 8;
        // An answer of another type becomes an empty ExtensionUnit.
        const auto status = qvariant_cast<ExtensionUnit>(
            commandChannel(ChannelRequest::Extension, QVariant::fromValue(request)));
        // While the switch slides, the user's choice is not sent yet. Use the next answer.
        const bool on = status.data[1] != 0;
        if (status.length > 1 && toggle->GetStatus() != on && !toggle->isSliding()) {
            toggle->blockNextSignal(); // do not send the value back to the camera
            toggle->SetStatus(on, false);
        }
        poll->start();
    }

    SwitchButton *const toggle = new SwitchButton(this);
    QTimer *const poll = new QTimer(this);
};

#include "minimalpanel.moc"
