// velmora_level_icons <folder>: writes the menu bar's level pictures as symbolic icons for icon
// themes, one for each step, so that panels can colour them.

#include "app/MeterGlyph.h"

#include <filesystem>
#include <fstream>
#include <iostream>
#include <stdexcept>
#include <string>

namespace {

using namespace velmora;

constexpr double side = 22.0; // points; the glyph stands in the middle of a square

void writeIcon(const std::filesystem::path& file, int step) {
    std::ofstream svg(file, std::ios::trunc);
    svg << "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"16\" height=\"16\" "
        << "viewBox=\"0 0 " << side << ' ' << side << "\">\n"
        << "  <style id=\"current-color-scheme\" type=\"text/css\">"
        << ".ColorScheme-Text { color: #808080; }</style>\n"
        << "  <g class=\"ColorScheme-Text\" fill=\"currentColor\">\n";
    for (const MeterBar& bar : meterBars(levelOfStep(step))) {
        svg << "    <rect x=\"" << bar.x << "\" y=\"" << bar.y + (side - meterGlyphHeight) / 2
            << "\" width=\"" << bar.width << "\" height=\"" << bar.height << "\" rx=\""
            << meterBarRadius << "\"/>\n";
    }
    svg << "  </g>\n</svg>\n";
    svg.flush();
    if (!svg) {
        throw std::runtime_error("cannot write " + file.string());
    }
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: velmora_level_icons <folder>\n";
        return 2;
    }
    try {
        std::filesystem::create_directories(argv[1]);
        for (int step = 0; step <= meterSteps; ++step) {
            const std::string digits = (step < 10 ? "0" : "") + std::to_string(step);
            writeIcon(std::filesystem::path(argv[1]) /
                          ("app.velmora.Velmora-level-" + digits + "-symbolic.svg"),
                      step);
        }
    } catch (const std::exception& error) {
        std::cerr << "velmora_level_icons: " << error.what() << '\n';
        return 1;
    }
    return 0;
}
