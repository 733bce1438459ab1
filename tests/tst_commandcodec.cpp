#include "controltrackingplugin.h"
#include "testmain.h"

/// The records, the codec and the interface as a host sees them.
class TestCommandCodec : public Test
{
    Q_OBJECT

private Q_SLOTS:
    void interfaceIsStable();
    void payloads_data();
    void payloads();
    void floatTable();
};

// A host that was built earlier calls by slot number and knows the records by name.
void TestCommandCodec::interfaceIsStable()
{
    const auto slotOf = [](auto operation) {
        std::ptrdiff_t offset[2];
        static_assert(sizeof operation == sizeof offset);
        memcpy(offset, &operation, sizeof offset);
        return int((offset[0] - 1) / std::ptrdiff_t(sizeof(void *)));
    };
    using Api = OrvPluginApi;
    const QVector<int> order = {slotOf(&Api::name),
                                slotOf(&Api::category),
                                slotOf(&Api::resetToDefault),
                                slotOf(&Api::insertWidget),
                                slotOf(&Api::syncPropValue),
                                slotOf(&Api::getCurrentParams),
                                slotOf(&Api::setCurrentParams)};
    QCOMPARE(order, (QVector<int>{0, 1, 2, 3, 4, 5, 6}));
    QCOMPARE(Api().category(), 2);
    QCOMPARE(QMetaType::typeName(qMetaTypeId<ExtensionUnit>()), "ExtensionUnit");
    QCOMPARE(QMetaType::typeName(qMetaTypeId<SettingData>()), "SettingData");
    QCOMPARE(QMetaType::typeName(qMetaTypeId<CameraData>()), "CameraData");
}

// Values, and the length and bytes that are written for them.
void TestCommandCodec::payloads_data()
{
    QTest::addColumn<int>("value");
    QTest::addColumn<QByteArray>("written");
    QTest::newRow("the low byte alone") << 0x1FF << QByteArray::fromHex("01FF");
    QTest::newRow("two bytes") << 0x0102 << QByteArray::fromHex("020102");
    QTest::newRow("negative") << -2 << QByteArray::fromHex("04FFFFFFFE");
    QTest::newRow("most significant first") << 1 << QByteArray::fromHex("0400000001");
}

void TestCommandCodec::payloads()
{
    QFETCH(int, value);
    QFETCH(QByteArray, written);
    QByteArray buffer(62, '\xAA');
    M24_Extension ext{7, 8, 0, 60, {0xFF, 0x53, 0x05, 0x42}, quint8(written.at(0))};
    ext.payload = reinterpret_cast<quint8 *>(buffer.data());
    ControlTrackingPlugin().fillPayload(ext, value);
    const QByteArray expected = QByteArray::fromHex("FF530542") + written;
    QCOMPARE(buffer.toHex(), (expected.leftJustified(60, '\0') + "\xAA\xAA").toHex());
}

void TestCommandCodec::floatTable()
{
    ControlTrackingPlugin plugin;
    unsigned char table[12] = {};
    QTest::ignoreMessage(QtDebugMsg, "setFloatValue :  1.5 , data :  0 , 0 , 192 , 63");
    plugin.setFloatValue(table, 1, 1.5F);
    QCOMPARE(QByteArray(reinterpret_cast<char *>(table), 12).toHex(),
             QByteArray("000000000000c03f00000000"));
    QCOMPARE(plugin.getFloatValue(table, 1), 1.5F);
}

TEST_MAIN(TestCommandCodec)
#include "tst_commandcodec.moc"
