#pragma once

#include <QString>

/// Lists the capture nodes, each with the extension units of its camera, or says that there are
/// none.
QString listCameras();
