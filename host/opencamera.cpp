#include "opencamera.h"

#include "errortexts.h"
#include "options.h"
#include "simulatedcamera.h"
#include "uvccamera.h"

std::unique_ptr<Camera> openCamera(const Options &options, QString *error)
{
    if (!options.camera.isEmpty()) {
        const auto use = options.readOnly ? UvcCamera::Use::ReadOnly : UvcCamera::Use::ReadAndWrite;
        CameraRefusal refusal;
        auto camera = UvcCamera::open(options.camera, options.unit, use, &refusal);
        *error = refusalText(options.camera, refusal);
        return camera;
    }
    auto camera = std::make_unique<SimulatedCamera>();
    camera->setStatus(options.status);
    camera->setFaults(options.faults);
    return camera;
}
