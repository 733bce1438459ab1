#pragma once

#include "controltrackingplugin.h"
#include "ui_root.h"

#include <QApplication>
#include <QRegularExpression>
#include <QTest>
#include <QVBoxLayout>

/// What the tests share: a host that answers the channel and writes down what crosses it, a way to
/// the panel's private parts, and a main function that fails on warnings nobody announced.

struct PanelInternals
{
    static Ui_root *ui(ControlTrackingPlugin &panel) { return panel.ui; }
    static QTimer *pollTimer(ControlTrackingPlugin &panel) { return panel.pollTimer.data(); }
};

/// A host's end of the channel, with a camera behind it. Every record is checked to the last byte
/// and written down in a word: "language", "read", "notice", or "04=1" for a command and its value.
class RecordingHost
{
public:
    QVariant language = 1;
    QByteArray status = QByteArray::fromHex("0000000100"); ///< the camera's bytes
    quint64 length = 60;                                   ///< what an answer claims to hold
    QVariant foreignAnswer;                                ///< given to a read if valid
    std::function<void()> meanwhile;                       ///< called in each request, if set
    QStringList traffic;

    /// What crossed since the last call, without what was asked.
    QStringList takeSent()
    {
        QStringList sent;
        sent.swap(traffic);
        sent.removeAll("read");
        sent.removeAll("language");
        return sent;
    }

    void installIn(OrvPluginApi &plugin)
    {
        plugin.commandChannel = [this](int request, const QVariant &record) {
            const QVariant reply = answer(request, record);
            if (meanwhile)
                meanwhile();
            return reply;
        };
    }

private:
    QVariant answer(int request, const QVariant &record)
    {
        if (request == 0 && record.canConvert<SettingData>()) {
            const auto query = record.value<SettingData>();
            const bool sound = query.value.userType() == QMetaType::Int && query.value == 0;
            traffic << (sound ? query.name : "malformed query");
            return language;
        }
        if (request == 3 && record.canConvert<CameraData>()) {
            const auto notice = record.value<CameraData>();
            const bool sound = notice.object->objectName() == QLatin1String("rb_hand") &&
                               notice.flag && notice.param1 == 3 && notice.param2 == 0 &&
                               notice.param3 == 2;
            traffic << (sound ? "notice" : "malformed notice");
            return {};
        }
        if (request != 4 || record.userType() != qMetaTypeId<ExtensionUnit>()) {
            traffic << "unknown request";
            return {};
        }
        const auto unit = record.value<ExtensionUnit>();
        QByteArray data(reinterpret_cast<const char *>(unit.data), sizeof unit.data);
        if (!unit.write) {
            const bool sound = unit.selector == 8 && unit.length == 0 && data.count('\0') == 255;
            traffic << (sound ? "read" : "malformed read");
            if (foreignAnswer.isValid())
                return foreignAnswer;
            ExtensionUnit reply;
            reply.selector = 8;
            reply.length = length;
            std::copy(status.cbegin(), status.cend(), reply.data);
            return QVariant::fromValue(reply);
        }
        QByteArray expected =
            QByteArray::fromHex("FF530500") + QByteArray("\1", 1) + data.mid(5, 1);
        expected[3] = data.at(3);
        expected.append(QByteArray(255 - expected.size(), '\0'));
        const bool sound = unit.selector == 7 && unit.length == 60 && data == expected;
        traffic << (sound ? QString("%1=%2")
                                .arg(int(data.at(3)), 2, 16, QLatin1Char('0'))
                                .arg(int(data.at(5)))
                          : "malformed command");
        return {};
    }
};

/// A host's window with a container, and a panel to be put into it.
struct HostedPanel
{
    HostedPanel()
    {
        (new QVBoxLayout(&window))->addWidget(container);
        new QVBoxLayout(container);
        window.resize(600, 900);
        host.installIn(*panel);
    }

    // A panel that was never inserted has no owner but this.
    ~HostedPanel() { delete panel; }

    void insertAndShow()
    {
        panel->insertWidget(container);
        window.show();
    }

    Ui_root *ui() { return PanelInternals::ui(*panel); }

    static void press(QWidget *widget)
    {
        QTest::mouseClick(widget, Qt::LeftButton, {}, widget->rect().center());
    }

    /// Presses a control if a user could.
    bool press(const QString &name)
    {
        auto *const control = panel->findChild<QWidget *>(name);
        if (!control || !control->isVisible())
            return false;
        press(control);
        return true;
    }

    /// What the panel shows, in words: switch, type, mode, composition and its button, visible
    /// rows.
    QString shown()
    {
        QStringList words{ui()->sw_title->GetStatus() ? "on" : "off",
                          ui()->sw_picture_mode->GetStatus() ? "composed" : "plain"};
        for (const auto *button : panel->findChildren<QAbstractButton *>()) {
            if (button->isChecked())
                words << button->objectName().section('_', 1, 1);
        }
        for (const QWidget *row :
             {ui()->frame_spliter, ui()->frame_picture_title, ui()->frame_picture_mode,
              ui()->frame_limit_title, ui()->frame_limit_setting_spliter}) {
            if (!row->isHidden())
                words << '|' + row->objectName().section('_', 1);
        }
        return words.join(' ');
    }

    RecordingHost host;
    QWidget window;
    QWidget *container = new QWidget;
    QPointer<ControlTrackingPlugin> panel = new ControlTrackingPlugin;
};

/// Longer than a slide on a machine that keeps up.
constexpr int slideOver = 150; // ms

/// Waits until the slides below `root` are over, and long enough for one more to show itself.
inline void settle(const QWidget &root)
{
    QTest::qWait(slideOver);
    const auto switches = root.findChildren<SwitchButton *>();
    QVERIFY(QTest::qWaitFor([&] {
        return std::none_of(switches.begin(), switches.end(),
                            [](const SwitchButton *button) { return button->isSliding(); });
    }));
}

namespace Warnings {

inline QtMessageHandler previousHandler = nullptr;
inline QRegularExpression expected("^$"); ///< matches the warnings that are to pass

inline void handle(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    if (message.contains("propagateSizeHints") || expected.match(message).hasMatch())
        return; // the former is what the offscreen platform says of every window
    if (type == QtWarningMsg || type == QtCriticalMsg)
        QTest::qFail(qPrintable("unannounced warning: " + message), __FILE__, __LINE__);
    previousHandler(type, context, message);
}

/// Call in initTestCase.
inline void failOnUnannounced()
{
    previousHandler = qInstallMessageHandler(handle);
}

} // namespace Warnings

/// As QTEST_MAIN; without a display and at 96 dots per inch unless the environment says otherwise.
#define TEST_MAIN(TestClass)                                                                       \
    int main(int argc, char **argv)                                                                \
    {                                                                                              \
        if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))                                         \
            qputenv("QT_QPA_PLATFORM", "offscreen");                                               \
        if (!qEnvironmentVariableIsSet("QT_FONT_DPI"))                                             \
            qputenv("QT_FONT_DPI", "96");                                                          \
        QApplication app(argc, argv);                                                              \
        TestClass test;                                                                            \
        return QTest::qExec(&test, argc, argv);                                                    \
    }
