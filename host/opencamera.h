#pragma once

#include <QString>

#include <memory>

class Camera;
struct Options;

/// The camera that the command line asks for. Null if it cannot be used: `error` is then a sentence
/// for the user.
std::unique_ptr<Camera> openCamera(const Options &options, QString *error);
