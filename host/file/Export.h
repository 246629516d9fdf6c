#pragma once

// Marks what the libraries of the host export.

#define PYXIS_CODECS_API __attribute__((visibility("default")))
