#include "commandchannel.h"
#include "extensionrecord.h"
#include "faultkinds.h"
#include "hostwindow.h"
#include "orvpluginapi.h"
#include "simulatedcamera.h"
#include "testmain.h"
#include "transferqueue.h"
#include "transfertext.h"

#include <QComboBox>
#include <QLabel>
#include <QSignalSpy>

/// A channel to a simulated camera with an unknown type.
struct Channel
{
    Channel() { camera->setValue(TrackingProtocol::Type, 9); }

    /// Makes a request and returns what the trace says about it.
    QString request(int kind, const QVariant &record)
    {
        QSignalSpy transfers(&channel, &CommandChannel::transferred);
        answer = channel.request(kind, record).value<ExtensionUnit>();
        if (!QTest::qWaitFor([&transfers] { return !transfers.isEmpty(); }))
            return "nothing";
        traced = transfers.first().first().value<Transfer>();
        return QStringList{directionText(traced), requestText(traced),
                           QString::number(traced.selector)}
                   .join(' ') +
               ": " + traced.meaning + ": " + resultText(traced);
    }

    const std::shared_ptr<SimulatedCamera> camera = std::make_shared<SimulatedCamera>();
    TransferQueue queue{camera};
    CommandChannel channel{queue};
    ExtensionUnit answer;
    Transfer traced;
};

class TestChannel : public Test
{
    Q_OBJECT

private Q_SLOTS:
    // Each request: direction, control, length, bytes (or -), fault of the camera.
    void transfers()
    {
        const struct
        {
            const char *request, *words, *status = "0001090100"; // of the camera, afterwards
        } rows[] = {
            {"get 8 0", "tracking on, type 9 (unknown), mode Standard, composition off: ok"},
            {"get 8 0 - short=3", "only 3 bytes, tracking on, type 9 (unknown): ok"},
            {"get 8 0 - no-answer", "no answer: ETIMEDOUT"},
            {"get 7 0", "refused: wrong control 7: not sent"},
            {"set 7 60 FF5305040100", "Tracking: off: ok", "0000090100"},
            {"set 7 60 FF5305070102", "Mode: Sport: ok", "0001090200"},
            {"set 7 60 FF5305130103 delay=30", "Composition: Bodies: ok", "0001090103"},
            {"set 7 60 FF5305130103 errno=EPROTO", "Composition: Bodies: EPROTO"},
            {"set 7 60 FF5305130103 refuse-writes", "Composition: Bodies: EPIPE"},
            {"set 8 60 FF5305040100", "refused: wrong control 8: not sent"},
            {"set 7 255 FF5305040100", "refused: 255 bytes instead of 60: not sent"},
            {"set 7 60 FF5306040100", "refused: the header is not FF 53 05: not sent"},
            {"set 7 60 FF5305050100", "refused: unknown command 0x05: not sent"},
            {"set 7 60 FF5305040200", "refused: a value of 2 bytes instead of 1: not sent"},
            {"set 7 60 FF5305070109", "refused: Mode: 9 (unknown): not sent"},
        };
        for (const auto &row : rows) {
            const QStringList request = QString(row.request).split(' ');
            const bool write = request[0] == "set";
            const QByteArray bytes = QByteArray::fromHex(request.value(3).toLatin1());
            const QVariant record = QVariant::fromValue(extensionRecord(
                write, request[1].toInt(), bytes.leftJustified(request[2].toInt(), '\0', true)));
            Channel channel;
            Faults faults = noFaults;
            QVERIFY(request.size() < 5 || addFault(faults, request[4]).isEmpty());
            channel.camera->setFaults(faults);

            QCOMPARE(channel.request(ChannelRequest::Extension, record),
                     request[0] + " Extension " + request[1] + ": " + row.words);
            QVERIFY(channel.traced.duration >= faults.at(Fault::Delay));
            const SimulatedCamera::Status status = channel.camera->status();
            QCOMPARE(QByteArray(reinterpret_cast<const char *>(status.data()), 5).toHex(),
                     QByteArray(row.status));
            QVERIFY(channel.answer.length <= TrackingProtocol::blockLength);
            QCOMPARE(channel.answer.selector, request[1].toInt());
            if (!write)
                QCOMPARE(payloadOf(channel.answer), channel.traced.bytes);
        }
    }

    void changesItself()
    {
        SimulatedCamera camera;
        Faults faults = noFaults;
        faults[Fault::ChangesItself] = 1;
        camera.setFaults(faults);
        QSignalSpy changes(&camera, &SimulatedCamera::statusChanged);
        for (int read = 0; read < 12; ++read)
            camera.readStatus();
        QCOMPARE(changes.size(), 4);
        QCOMPARE(camera.status(), (SimulatedCamera::Status{0, 0, 1, 2, 1})); // each setting once
    }

    void otherRequests()
    {
        Channel channel;
        const auto words = [&channel](int kind, auto record) {
            return channel.request(kind, QVariant::fromValue(record));
        };
        const auto language = QVariant::fromValue(SettingData{"language", 0});
        QCOMPARE(channel.channel.request(ChannelRequest::Setting, language), QVariant(1));
        QCOMPARE(words(0, SettingData{"language", 0}), "get Setting 0: language: 1: ok");
        QCOMPARE(words(0, SettingData{"volume", 0}), "get Setting 0: volume: no such setting: ok");
        QCOMPARE(words(3, CameraData{nullptr, true, 3, 0, 2}),
                 "set Camera 0: notice from no widget: true, 3, 0, 2: ok");
        const QString refused(" %1 0: refused: no such request with the record \"%2\": not sent");
        QCOMPARE(words(4, SettingData()), refused.arg(4).arg("SettingData"));
        QCOMPARE(words(9, ExtensionUnit()), refused.arg(9).arg("ExtensionUnit"));
    }

    void window()
    {
        Channel channel;
        HostWindow window(channel.queue, channel.channel, channel.camera.get());
        const auto read = [&] {
            channel.request(ChannelRequest::Extension,
                            QVariant::fromValue(extensionRecord(false, 8, {})));
            return window.findChild<QLabel *>("lb_condition")->text();
        };
        const auto choose = [](QComboBox *box, const char *value) {
            box->setCurrentText(value);
            Q_EMIT box->activated(box->currentIndex());
        };
        read();
        QCOMPARE(read(), "The camera is connected.");
        choose(window.findChildren<QComboBox *>().at(1), "Board");
        read();
        QVERIFY(channel.traced.meaning.contains("Board"));
        choose(window.findChild<QComboBox *>("fault_errno"), "EIO");
        QVERIFY(read().contains("Reading control 8 failed: EIO, the camera refused"));
    }
};

TEST_MAIN(TestChannel)
#include "tst_channel.moc"
