#pragma once

#include <QString>

/// Describes each capture node and the extension units of its camera, or says that no camera was
/// found. Also reports nodes that cannot be opened.
QString listCameras();
