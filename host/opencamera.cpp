#include "opencamera.h"

#include "options.h"
#include "simulatedcamera.h"

namespace {

QString noRealCameras()
{
    return QStringLiteral("This program is built without real cameras.");
}

} // namespace

std::unique_ptr<Camera> openCamera(const Options &options, QString *error)
{
    if (!options.camera.isEmpty()) {
        *error = noRealCameras();
        return nullptr;
    }
    auto camera = std::make_unique<SimulatedCamera>();
    camera->setStatus(options.status);
    camera->setFaults(options.faults);
    return camera;
}

QString listCameras()
{
    return noRealCameras() + QLatin1Char('\n');
}
