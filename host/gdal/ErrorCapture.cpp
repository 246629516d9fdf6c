#include "host/gdal/ErrorCapture.h"

#include <cpl_error.h>

#include <exception>

namespace Pyxis {
namespace {

void keepMessage(CPLErr severity, CPLErrorNum /*number*/, const char* message) {
    if (severity < CE_Warning || message == nullptr) {
        return;
    }
    auto& last = *static_cast<ErrorCapture::Messages*>(CPLGetErrorHandlerUserData());
    try {
        (severity == CE_Warning ? last.warning : last.error) = message;
    } catch (const std::exception&) {
        // An exception must not pass through GDAL's C code; the message is lost.
    }
}

}  // namespace

ErrorCapture::ErrorCapture() {
    CPLPushErrorHandlerEx(keepMessage, &last_);
}

ErrorCapture::~ErrorCapture() {
    CPLPopErrorHandler();
}

}  // namespace Pyxis
