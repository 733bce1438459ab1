#include "fuzzing.h"
#include "hostedpanel.h"

#include <cmath>
#include <memory>

/// A driver's area table and descriptor, within the limits that descriptors have, and a user who
/// deletes tiles.
extern "C" int LLVMFuzzerTestOneInput(const uchar *bytes, size_t size)
{
    needApplication(Warnings::AreFindings);
    Input input(bytes, size);
    // One panel for all runs: its row of areas can be emptied again.
    static auto *const hosted = new HostedPanel;
    ControlTrackingPlugin &panel = *hosted->panel;
    if (!panel.layout()) {
        panel.commandChannel = [](int, const QVariant &) {
            return QVariant();
        };
        panel.insertWidget(hosted->container);
    }
    QHBoxLayout &row = *hosted->ui().hl_unlimit;
    QWidget &addButton = *hosted->ui().pb_add;
    const auto tiles = [&row] {
        return row.count() - 2; // with the add button and a spacer
    };

    const auto descriptor = QSharedPointer<M24_Extension>::create();
    const auto filled = input.take();
    descriptor->setSelector = input.take<qint32>();
    descriptor->payloadSize = 5 + input.take() % 251;
    const QByteArray header = input.take(4);
    std::copy(header.cbegin(), header.cend(), descriptor->header);
    const int length = input.take() % (descriptor->payloadSize - 4);
    descriptor->valueLength = quint8(length);
    // Of exactly these sizes on the heap, so that a sanitizer sees their ends.
    const auto payload = std::make_unique<quint8[]>(size_t(descriptor->payloadSize));
    const auto table = std::make_unique<quint8[]>(size_t(length));
    descriptor->payload = payload.get();
    descriptor->valueData = filled & 1 ? table.get() : nullptr;
    PanelInternals::areaTable(panel) = filled & 2 ? descriptor : nullptr;
    const auto fillTable = [&] {
        const QByteArray filling = input.take(length);
        std::copy(filling.cbegin(), filling.cend(), table.get());
    };
    const auto contents = [&] {
        return QByteArray(reinterpret_cast<const char *>(table.get()), length);
    };

    QVector<ExtensionUnit> sent;
    panel.commandChannel = [&sent](int request, const QVariant &record) {
        REQUIRE(request == ChannelRequest::Extension);
        sent << record.value<ExtensionUnit>();
        return QVariant();
    };
    QStringList angles; // of the tiles, in their order
    const auto checkTiles = [&] {
        REQUIRE(tiles() == angles.size() && addButton.isHidden() == (tiles() == 3));
        for (int i = 0; i < angles.size(); ++i)
            REQUIRE(row.itemAt(i)->widget()->findChild<QLabel *>()->text() == angles[i]);
    };
    const auto remove = [&](int index) {
        QByteArray due = contents();
        QWidget *const tile = row.itemAt(index)->widget();
        auto *const button = tile->findChild<QPushButton *>("delete");
        for (const auto type : {QEvent::Leave, QEvent::Enter}) {
            QEvent hover(type);
            QCoreApplication::sendEvent(tile, &hover);
            REQUIRE(button->isHidden() == (type == QEvent::Leave));
        }
        button->click();
        angles.removeAt(index);
        checkTiles();

        float count = 0;
        std::memcpy(&count, due.constData(), size_t(qMin(length, 4)));
        const float areas = std::trunc(count);
        if (filled % 4 != 3 || !(areas >= 1 && 4 + 16 * areas <= float(length))) {
            REQUIRE(sent.isEmpty());
            REQUIRE(contents() == due);
            return;
        }
        const float left = areas - 1;
        std::memcpy(due.data(), &left, 4);
        due.replace(4 + 16 * int(left), 16, QByteArray(16, '\0'));
        REQUIRE(contents() == due);
        REQUIRE(sent.size() == 1);
        const ExtensionUnit unit = sent.takeFirst();
        REQUIRE(unit.write && unit.selector == descriptor->setSelector);
        REQUIRE(unit.length == quint64(descriptor->payloadSize));
        const QByteArray data = (header + char(length) + due).leftJustified(sizeof unit.data, '\0');
        REQUIRE(std::equal(data.cbegin(), data.cend(), reinterpret_cast<const char *>(unit.data)));
    };

    fillTable();
    while (!input.left.isEmpty()) {
        const auto step = input.take();
        if (step & 1) {
            fillTable();
        } else if (step & 2 && !addButton.isHidden()) {
            const long start = input.take<qint16>();
            const long end = input.take<qint64>();
            panel.insertUnLimitArea(start, end);
            angles << QString("%1°/%2°").arg(start).arg(end);
            checkTiles();
        } else if (tiles() > 0) {
            remove((step >> 2) % tiles());
        }
    }
    while (tiles() > 0)
        remove(0);
    return 0;
}
