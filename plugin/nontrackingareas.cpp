// Non-tracking areas: their tiles, and the table of areas in which the camera does not track.

#include "areatile.h"
#include "controltrackingplugin.h"
#include "ui_root.h"

#include <algorithm>

namespace {

// The area table starts with the number of records, in single precision. Sizes in bytes.
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

// Tiles are not tied to records: deleting any tile removes the last record.
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
