#include "opencamera.h"

#include "options.h"
#include "simulatedcamera.h"
#include "uvccamera.h"

std::unique_ptr<Camera> openCamera(const Options &options, QString *error)
{
    if (!options.camera.isEmpty()) {
        const auto use = options.readOnly ? UvcCamera::Use::ReadOnly : UvcCamera::Use::ReadAndWrite;
        return UvcCamera::open(options.camera, options.unit, use, error);
    }
    auto camera = std::make_unique<SimulatedCamera>();
    camera->setStatus(options.status);
    camera->setFaults(options.faults);
    return camera;
}
