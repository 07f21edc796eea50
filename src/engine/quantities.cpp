// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/quantities.h"

#include "project/ProjectInput.h"

namespace telvo::engine {

std::string_view unitName(Kind kind, std::int16_t units) {
    const bool english = units == project::English;
    switch (kind) {
    case Kind::Length:
        return english ? "ft" : "m";
    case Kind::Area:
        return english ? "ft2" : "m2";
    case Kind::Force:
        return english ? "lb" : "kN";
    case Kind::ForcePerLength:
        return english ? "lb/ft" : "kN/m";
    case Kind::Stress:
        return english ? "psf" : "kPa";
    case Kind::Factor:
    case Kind::Number:
        break;
    }
    return "";
}

} // namespace telvo::engine
