#include "controltrackingplugin.h"
#include "testmain.h"

/// The records, the codec and the interface as a host sees them.
class TestCommandCodec : public Test
{
    Q_OBJECT

private Q_SLOTS:
    // A host that was built earlier calls by slot number and knows the records by name.
    void interfaceIsStable()
    {
        const auto slot = [](auto operation) {
            std::ptrdiff_t offset; // in the table, and one
            memcpy(&offset, &operation, sizeof offset);
            return int(offset / std::ptrdiff_t(sizeof(void *)));
        };
        using Api = OrvPluginApi;
        const QVector<int> order = {slot(&Api::name),
                                    slot(&Api::category),
                                    slot(&Api::resetToDefault),
                                    slot(&Api::insertWidget),
                                    slot(&Api::syncPropValue),
                                    slot(&Api::getCurrentParams),
                                    slot(&Api::setCurrentParams)};
        QCOMPARE(order, (QVector<int>{0, 1, 2, 3, 4, 5, 6}));
        QCOMPARE(Api().category(), 2);
        QCOMPARE(QMetaType::typeName(qMetaTypeId<ExtensionUnit>()), "ExtensionUnit");
        QCOMPARE(QMetaType::typeName(qMetaTypeId<SettingData>()), "SettingData");
        QCOMPARE(QMetaType::typeName(qMetaTypeId<CameraData>()), "CameraData");
    }

    // Most significant first, zeros up to the size and nothing beyond.
    void payload()
    {
        QByteArray buffer(62, '\xAA');
        M24_Extension ext{7, 8, 0, 60, {0xFF, 0x53, 0x05, 0x42}, 4};
        ext.payload = reinterpret_cast<quint8 *>(buffer.data());
        ControlTrackingPlugin().fillPayload(ext, -0x01020304);
        const QByteArray expected = QByteArray::fromHex("FF53054204FEFDFCFC");
        QCOMPARE(buffer.toHex(), (expected.leftJustified(60, '\0') + "\xAA\xAA").toHex());
    }

    void floatTable()
    {
        ControlTrackingPlugin plugin;
        unsigned char table[12] = {};
        QTest::ignoreMessage(QtDebugMsg, "setFloatValue :  1.5 , data :  0 , 0 , 192 , 63");
        plugin.setFloatValue(table, 1, 1.5F);
        QCOMPARE(QByteArray(reinterpret_cast<char *>(table), 12).toHex(),
                 QByteArray("000000000000c03f00000000"));
        QCOMPARE(plugin.getFloatValue(table, 1), 1.5F);
    }
};

TEST_MAIN(TestCommandCodec)
#include "tst_commandcodec.moc"
