#pragma once

// Marks what the library of component codecs exports.

#define PYXIS_CODECS_API __attribute__((visibility("default")))
