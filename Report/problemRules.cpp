#include "Report/problemRules.h"

std::string command(const Scene& scene, const std::string& words) {
    return "ktsetup " + std::to_string(scene.adapterId) + " " + words;
}
