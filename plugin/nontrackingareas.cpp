// The non-tracking areas: their tiles, and the table that tells the camera of them.

#include "areatile.h"
#include "controltrackingplugin.h"
#include "ui_root.h"

#include <algorithm>

namespace {

// Bytes of the area table: a count, as a single, and the records.
constexpr int countSize = 4;
constexpr int recordSize = 16;

} // namespace

void ControlTrackingPlugin::insertUnLimitArea(long startAngle, long endAngle)
{
    const AreaTile tile = insertAreaTile(*ui->hl_unlimit, *ui->pb_add, startAngle, endAngle);
    connect(tile.frame, &QPressFrame::hoverEvent, this,
            [this, tile](bool enter) { onAreaHover(tile.deleteButton, enter); });
    connect(tile.deleteButton, &QPushButton::clicked, this,
            [this, tile] { onAreaDelete(tile.frame); });
}

void ControlTrackingPlugin::onAreaHover(QPushButton *deleteButton, bool enter)
{
    deleteButton->setVisible(enter);
}

// A tile does not know its record: whichever goes, the table loses its last one.
void ControlTrackingPlugin::onAreaDelete(QPressFrame *tile)
{
    removeAreaTile(*ui->hl_unlimit, *ui->pb_add, tile);
    if (!areaTable || !areaTable->valueData)
        return;
    const int room = (areaTable->valueLength - countSize) / recordSize;
    if (room < 1)
        return;
    const float announced = getFloatValue(areaTable->valueData, 0);
    // Not "announced < 1 || ...", which a count that is not a number would pass.
    if (!(announced >= 1 && announced < float(room + 1)))
        return;
    const int remaining = int(announced) - 1;
    setFloatValue(areaTable->valueData, 0, float(remaining));
    std::fill_n(areaTable->valueData + countSize + recordSize * remaining, recordSize, quint8(0));
    fillPayloadBytes(*areaTable);
    sendPayload(*areaTable);
}
