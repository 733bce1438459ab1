#include "support.h"

/// The records, the codec and the interface as a host sees them.
class TestCommandCodec : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { Warnings::failOnUnannounced(); }
    void interfaceIsStable();
    void recordNames();
    void payload_data();
    void payload();
    void singles();
};

// A host that was built earlier calls by slot number.
void TestCommandCodec::interfaceIsStable()
{
    const auto slotOf = [](auto operation) {
        std::ptrdiff_t offset[2];
        static_assert(sizeof operation == sizeof offset);
        memcpy(offset, &operation, sizeof offset);
        return int((offset[0] - 1) / std::ptrdiff_t(sizeof(void *)));
    };
    QCOMPARE(slotOf(&OrvPluginApi::name), 0);
    QCOMPARE(slotOf(&OrvPluginApi::category), 1);
    QCOMPARE(slotOf(&OrvPluginApi::resetToDefault), 2);
    QCOMPARE(slotOf(&OrvPluginApi::insertWidget), 3);
    QCOMPARE(slotOf(&OrvPluginApi::syncPropValue), 4);
    QCOMPARE(slotOf(&OrvPluginApi::getCurrentParams), 5);
    QCOMPARE(slotOf(&OrvPluginApi::setCurrentParams), 6);

    OrvPluginApi bare;
    QVERIFY(bare.name().isEmpty() && !bare.name().isNull());
    QCOMPARE(bare.category(), 2);
    QVERIFY(!bare.commandChannel);

    ControlTrackingPlugin plugin;
    QCOMPARE(plugin.name(), QStringLiteral("m24_tracking"));
    QCOMPARE(plugin.category(), 0);
    QVERIFY(plugin.getCurrentParams().isEmpty());

    const QMetaObject &meta = ControlTrackingPlugin::staticMetaObject;
    QCOMPARE(meta.methodCount() - meta.methodOffset(), 2);
    QCOMPARE(meta.method(meta.methodOffset()).methodSignature(),
             QByteArray("onTrackingMode(QAbstractButton*,bool)"));
    QCOMPARE(meta.method(meta.methodOffset() + 1).methodSignature(),
             QByteArray("setPictureModeUI(QAbstractButton*,bool)"));
}

void TestCommandCodec::recordNames()
{
    QCOMPARE(QMetaType::typeName(qMetaTypeId<ExtensionUnit>()), "ExtensionUnit");
    QCOMPARE(QMetaType::typeName(qMetaTypeId<SettingData>()), "SettingData");
    QCOMPARE(QMetaType::typeName(qMetaTypeId<CameraData>()), "CameraData");
}

void TestCommandCodec::payload_data()
{
    QTest::addColumn<int>("length");
    QTest::addColumn<int>("value");
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("one byte") << 1 << 2 << QByteArray::fromHex("02");
    QTest::newRow("low byte only") << 1 << 0x1FF << QByteArray::fromHex("FF");
    QTest::newRow("four bytes") << 4 << 1 << QByteArray::fromHex("00000001");
    QTest::newRow("negative") << 4 << -2 << QByteArray::fromHex("FFFFFFFE");
}

void TestCommandCodec::payload()
{
    QFETCH(int, length);
    QFETCH(int, value);
    QFETCH(QByteArray, bytes);
    ControlTrackingPlugin plugin;
    QByteArray buffer(62, '\xAA');
    M24_Extension ext{7, 8, 0, 60, {0xFF, 0x53, 0x05, 0x42}, quint8(length)};
    ext.payload = reinterpret_cast<quint8 *>(buffer.data());
    plugin.fillPayload(ext, value);
    QByteArray expected = QByteArray::fromHex("FF530542") + char(length) + bytes;
    expected.append(QByteArray(60 - expected.size(), '\0')).append("\xAA\xAA");
    QCOMPARE(buffer.toHex(), expected.toHex());
}

void TestCommandCodec::singles()
{
    ControlTrackingPlugin plugin;
    QByteArray table(12, '\0');
    auto *const buffer = reinterpret_cast<unsigned char *>(table.data());
    QTest::ignoreMessage(QtDebugMsg, "setFloatValue :  1.5 , data :  0 , 0 , 192 , 63");
    plugin.setFloatValue(buffer, 1, 1.5F);
    QCOMPARE(table.toHex(), QByteArray("000000000000c03f00000000"));
    QCOMPARE(plugin.getFloatValue(buffer, 1), 1.5F);
}

TEST_MAIN(TestCommandCodec)
#include "tst_commandcodec.moc"
