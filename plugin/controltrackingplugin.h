#pragma once

#include "m24extension.h"
#include "orvpluginapi.h"

#include <QAbstractButton>
#include <QSharedPointer>
#include <QTimer>
#include <QWidget>

struct Choice;
class QPressFrame;
class QPushButton;
class Ui_root;

/// The "AI Tracking" panel and the plug-in's one instance.
///
/// The panel keeps no model of the camera: the controls are the state. What it reads back from the
/// camera it shows without sending it again, but for one value: a composition of 1 to 3 that the
/// first answer brings is sent back once, as the button that it checks is reported.
class ControlTrackingPlugin : public QWidget, public OrvPluginApi
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "com.talsen.OrvPluginApi")
    Q_INTERFACES(OrvPluginApi)

public:
    explicit ControlTrackingPlugin(QWidget *parent = nullptr);
    ~ControlTrackingPlugin() override;

    /// 0.
    int category() override;
    /// "m24_tracking", also the stem of the catalogs' names.
    QString name() override;
    /// Moves the controls to the factory defaults, as the user would; those that change send their
    /// command. Does nothing before insertWidget.
    void resetToDefault() override;
    /// Builds the panel in the host's language, shows the camera's state, and starts to follow it:
    /// one retry after 1 s if there is no answer; from 4 s on a poll of tracking and type, 1 s
    /// after the answer to the one before. Timers of Qt::CoarseTimer: 5 % to either side.
    void insertWidget(QWidget *container) override;

    /// Assembles a command in `ext.payload`, the value most significant byte first.
    void fillPayload(M24_Extension &ext, int value);
    /// The same with `ext.valueLength` value bytes from `ext.valueData`.
    void fillPayloadBytes(M24_Extension &ext);
    /// Sends the assembled payload as one set request. The answer is ignored.
    void sendPayload(M24_Extension &ext);
    /// fillPayload and sendPayload.
    void sendCommand(M24_Extension &ext, int value);
    /// Reads the status block: byte 1 tracking on, 2 type, 3 mode, 4 composition. `length` 0: no
    /// answer, or none that is an ExtensionUnit.
    ExtensionUnit readStatus(const M24_Extension &ext);
    /// Asks the host for one of its settings.
    QVariant querySetting(const QString &name);
    /// Passes a record to the host. The answer is ignored.
    void sendCameraData(const CameraData &record);

    /// Stores `value` at byte 4 * `index` as a single in native byte order, and logs it.
    void setFloatValue(unsigned char *buffer, int index, float value);
    /// The single stored at byte 4 * `index`.
    float getFloatValue(unsigned char *buffer, int index);

    /// Shows or hides the row `section` with the window of `host` frozen. With `finish` the window
    /// is laid out, thawed and painted on the next turn of the event loop; without, it stays frozen
    /// until a later call does so.
    void updateSpliterSub(QWidget *host, QWidget *section, bool show, bool finish);

    /// Adds the tile of a non-tracking area to the area row, which is hidden in this panel. At most
    /// three; the area table is left alone and nothing is sent. Only after insertWidget.
    /// Its pictures, ":/UI/icon_delete.svg" and ":/UI/icon_delete_hover.svg", are the host's.
    void insertUnLimitArea(long startAngle, long endAngle);

private Q_SLOTS:
    void onTrackingMode(QAbstractButton *button, bool checked);
    void setPictureModeUI(QAbstractButton *button, bool checked);

private:
    friend struct PanelInternals; // the tests' way in

    // Set-up and read-back.
    void installCatalog();
    void connectControls();
    void makeControlsAccessible();
    void scaleForScreen();
    void applyTrackingStatus(const ExtensionUnit &reply);
    void retryStatusRead();
    void startPolling();
    void pollTrackingStatus();
    QWidget *host();

    // What the user does.
    void onTitleClicked();
    void onTrackingSwitch(int value);
    void onTrackingType(QAbstractButton *button, bool checked);
    void onPictureModeSwitch(int value);
    void sendChoice(M24_Extension &setting, const Choice *choice);
    void sendCameraNotice();
    void showCompositionRows(bool basic);

    // The areas.
    void onAreaHover(QPushButton *deleteButton, bool enter);
    void onAreaDelete(QPressFrame *tile);

    Ui_root *ui; // filled by insertWidget
    QSharedPointer<QTimer> pollTimer;
    QSharedPointer<M24_Extension> trackingSwitch;
    QSharedPointer<M24_Extension> trackingType;
    QSharedPointer<M24_Extension> trackingMode;
    QSharedPointer<M24_Extension> composition;
    QSharedPointer<M24_Extension> areaTable; // empty until a driver of the areas fills it
    quint8 payloadBuffer[60] = {};           // shared: each command is assembled and sent in one go
};
