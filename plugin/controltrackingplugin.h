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

/// The "AI Tracking" panel, which is also the plug-in's instance.
///
/// The panel keeps no model of the camera: the controls hold the state. It shows what it reads from
/// the camera without sending it back, with one exception: a composition of 1 to 3 that is read at
/// set-up is sent back once, because the group reports the button that it checks.
class ControlTrackingPlugin : public QWidget, public OrvPluginApi
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "com.talsen.OrvPluginApi")
    Q_INTERFACES(OrvPluginApi)

public:
    explicit ControlTrackingPlugin(QWidget *parent = nullptr);
    ~ControlTrackingPlugin() override;

    /// Returns 0.
    int category() override;
    /// Returns "m24_tracking". The file names of the catalogs begin with it.
    QString name() override;
    /// Moves the controls to the factory defaults. Those that change send their commands, as if the
    /// user had pressed them. A sliding switch is left alone. Does nothing before insertWidget().
    void resetToDefault() override;
    /// Builds the panel in the host's language, puts it into `container`, which becomes its owner,
    /// and shows the camera's state. If the camera does not answer, the panel asks once more after
    /// 1 s; without an answer to that, it shows its title only. From about 4 s on, it polls
    /// tracking and type, each time 1 s after the previous answer. The retry is precise; the poll's
    /// timers may be 5 % off.
    void insertWidget(QWidget *container) override;

    /// Assembles a command in `ext.payload`: header, length, and the lowest `ext.valueLength` bytes
    /// of `value`, most significant byte first.
    void fillPayload(M24_Extension &ext, int value);
    /// The same, but with `ext.valueLength` bytes from `ext.valueData`, which must not be null.
    void fillPayloadBytes(M24_Extension &ext);
    /// Sends the assembled payload in one set request. Ignores the answer.
    void sendPayload(M24_Extension &ext);
    /// Calls fillPayload() and sendPayload().
    void sendCommand(M24_Extension &ext, int value);
    /// Reads the status block. In the returned `data`, byte 1 is tracking, 2 the type, 3 the mode
    /// and 4 composition. Its `length` is 0 if the camera did not answer, or the host answered with
    /// anything but an ExtensionUnit.
    ExtensionUnit readStatus(const M24_Extension &ext);
    /// Asks the host for a setting. Returns an invalid QVariant if the host does not have it.
    QVariant querySetting(const QString &name);
    /// Sends a notice to the host. Ignores the answer.
    void sendCameraData(const CameraData &record);

    /// Stores `value` at byte 4 * `index` of `buffer`, in single precision and native byte order,
    /// and logs it.
    void setFloatValue(unsigned char *buffer, int index, float value);
    /// Returns the number that setFloatValue() stored at `index`.
    float getFloatValue(unsigned char *buffer, int index);

    /// Freezes the window of `host` and shows or hides the row `section`. With `finish`, the window
    /// is laid out, thawed and painted on the next turn of the event loop. Without it, the window
    /// stays frozen until a later call with `finish`.
    void updateSpliterSub(QWidget *host, QWidget *section, bool show, bool finish);

    /// Adds a tile with two angles in degrees to the row of non-tracking areas, which this panel
    /// hides. Sends nothing and does not change the area table. Call it only after insertWidget(),
    /// for at most three tiles. The host's resources provide the pictures
    /// ":/UI/icon_delete.svg" and ":/UI/icon_delete_hover.svg".
    void insertUnLimitArea(long startAngle, long endAngle);

private Q_SLOTS:
    void onTrackingMode(QAbstractButton *button, bool checked);
    void setPictureModeUI(QAbstractButton *button, bool checked);

private:
    friend struct PanelInternals; // test access

    // Set-up and read-back.
    void installCatalog();
    void connectControls();
    void makeControlsAccessible();
    void setUpKeyboard();
    void scaleForScreen();
    void applyTrackingStatus(const ExtensionUnit &reply);
    void retryStatusRead();
    void pollTrackingStatus();
    QWidget *host();

    // Handlers of the controls.
    void onTitleClicked();
    void onTrackingSwitch(int value);
    void onTrackingType(QAbstractButton *button, bool checked);
    void onPictureModeSwitch(int value);
    void sendChoice(M24_Extension &setting, const Choice *choice);
    void sendCameraNotice();
    void showCompositionRows(bool basic);

    // Non-tracking areas.
    void onAreaHover(QPushButton *deleteButton, bool enter);
    void onAreaDelete(QPressFrame *tile);

    Ui_root *ui; // filled by insertWidget
    QSharedPointer<QTimer> pollTimer;
    QSharedPointer<M24_Extension> trackingSwitch;
    QSharedPointer<M24_Extension> trackingType;
    QSharedPointer<M24_Extension> trackingMode;
    QSharedPointer<M24_Extension> composition;
    QSharedPointer<M24_Extension> areaTable; // null: this panel does not manage areas
    quint8 payloadBuffer[60] = {}; // shared: commands are assembled and sent one at a time
};
