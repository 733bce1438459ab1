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
    insertAreaTile(*ui->hl_unlimit, *ui->pb_add, startAngle, endAngle,
                   [this] { shortenAreaTable(); });
}

// A tile does not know its record: whichever goes, the table loses its last one.
void ControlTrackingPlugin::shortenAreaTable()
{
    if (!areaTable || !areaTable->valueData)
        return;
    const int room = (areaTable->valueLength - countSize) / recordSize;
    if (room < 1)
        return;
    const float announced = getFloatValue(areaTable->valueData, 0);
    // So written, a count that is not a number fails too.
    if (!(announced >= 1 && announced < float(room + 1)))
        return;
    const int remaining = int(announced) - 1;
    setFloatValue(areaTable->valueData, 0, float(remaining));
    std::fill_n(areaTable->valueData + countSize + recordSize * remaining, recordSize, quint8(0));
    fillPayloadBytes(*areaTable);
    sendPayload(*areaTable);
}
