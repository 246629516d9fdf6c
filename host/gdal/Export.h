#pragma once

// What the library of component codecs shows to the outside.

#define PYXIS_CODECS_API __attribute__((visibility("default")))
