#include "host/gdal/ErrorCapture.h"

#include <cpl_error.h>

#include <exception>

namespace Pyxis {
namespace {

void keepMessage(CPLErr severity, CPLErrorNum /*number*/, const char* message) {
    if (severity < CE_Failure || message == nullptr) {
        return;
    }
    try {
        *static_cast<std::string*>(CPLGetErrorHandlerUserData()) = message;
    } catch (const std::exception&) {
        // An exception must not pass through GDAL's C code; the message is lost.
    }
}

}  // namespace

ErrorCapture::ErrorCapture() {
    CPLPushErrorHandlerEx(keepMessage, &message_);
}

ErrorCapture::~ErrorCapture() {
    CPLPopErrorHandler();
}

}  // namespace Pyxis
