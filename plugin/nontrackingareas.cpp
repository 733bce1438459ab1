// Non-tracking areas: their tiles, and the area table that is sent to the camera.

#include "areatile.h"
#include "controltrackingplugin.h"
#include "ui_root.h"

#include <algorithm>

namespace {

// Sizes in the area table, in bytes: the count, a single-precision number, then the records.
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

// Tiles are not tied to records: whichever tile is deleted, the last record goes.
void ControlTrackingPlugin::onAreaDelete(QPressFrame *tile)
{
    removeAreaTile(*ui->hl_unlimit, *ui->pb_add, tile);
    if (!areaTable || !areaTable->valueData)
        return;
    const int room = (areaTable->valueLength - countSize) / recordSize;
    if (room < 1)
        return;
    const float count = getFloatValue(areaTable->valueData, 0);
    // Written so that it rejects NaN, too.
    if (!(count >= 1 && count < float(room + 1)))
        return;
    const int remaining = int(count) - 1;
    setFloatValue(areaTable->valueData, 0, float(remaining));
    std::fill_n(areaTable->valueData + countSize + recordSize * remaining, recordSize, quint8(0));
    fillPayloadBytes(*areaTable);
    sendPayload(*areaTable);
}
