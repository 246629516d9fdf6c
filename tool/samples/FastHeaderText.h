#pragma once

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

namespace kestms::samples {

/// The bands of a FAST header: UTM zone 32, 8-bit samples.
struct FastProduct {
    std::vector<std::string> bandFiles;
    int width = 0;
    int height = 0;
    double x = 0.0;  ///< upper-left corner
    double y = 0.0;
    double pixelSize = 0.0;
    std::string satellite = "LANDSAT7";
};

inline std::string padded(std::string text, std::size_t width) {
    text.resize(std::max(width, text.size()), ' ');
    return text;
}

inline std::string formatted(const char* format, double value) {
    char text[64];
    std::snprintf(text, sizeof text, format, value);
    return text;
}

/// The three records of 1,536 characters of a header in the FAST-L7A layout: administrative,
/// radiometric and geometric.
inline std::string fastHeaderText(const FastProduct& product) {
    std::string text = padded("PRODUCT ID =L7", 36) + "ACQUISITION DATE =20000609";
    text = padded(text, 80) + "SATELLITE =" + padded(product.satellite, 12) + "SENSOR =ETM+      ";
    for (const std::string& name : product.bandFiles) {
        text += " FILENAME =" + padded(name, 29);
    }
    text += formatted(" PIXELS PER LINE =%5.0f", product.width);
    text += formatted(" LINES PER BAND =%5.0f OUTPUT BITS PER PIXEL =8 ", product.height);
    text = padded(text, 1536) + "GAINS AND BIASES IN ASCENDING BAND NUMBER ORDER";
    for (int i = 0; i < 7; ++i) {
        text += " -6.2 0.77";
    }
    text = padded(text, 3072) + "MAP PROJECTION =UTM  ELLIPSOID =WGS84              DATUM =WGS84 " +
           " USGS PROJECTION PARAMETERS =";
    for (int i = 0; i < 15; ++i) {
        text += " 0.0";
    }
    text += " USGS MAP ZONE =32    ";
    // Corners are those of the outer pixels' centres.
    const auto corner = [&](const char* name, double column, double row) {
        text += padded(std::string(name) + " =", 31);
        text += formatted("%13.3f ", product.x + column * product.pixelSize);
        text += formatted("%13.3f ", product.y - row * product.pixelSize);
    };
    const double right = product.width - 0.5;
    const double bottom = product.height - 0.5;
    corner("UL", 0.5, 0.5);
    corner("UR", right, 0.5);
    corner("LR", right, bottom);
    corner("LL", 0.5, bottom);
    return padded(text, 4608);
}

}  // namespace kestms::samples
