// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/pictures.h"

#include "cli/cases.h"

#include <CLI/CLI.hpp>

#include <algorithm>

namespace telvo::cli {

namespace {

/// Pixels of a picture's sides: room for its letters, and no more than a large sheet.
constexpr int LeastSide = 300, GreatestSide = 4000;

constexpr std::string_view PictureEndings[] = {".svg", ".png", ".pdf"};

} // namespace

void addPictureOptions(CLI::App& command, PictureOptions& options, const std::string& usual) {
    command.add_option("--dpi", options.dpi, "pixels to the inch of a PNG")
        ->check(CLI::Range(LowestDpi, HighestDpi))
        ->capture_default_str();
    command
        .add_option("--size", options.size,
                    "width and height in pixels of 1/96 inch; letters keep their size")
        ->expected(2)
        ->check(CLI::Range(LeastSide, GreatestSide))
        ->option_text("WIDTH HEIGHT [" + usual + "]");
}

bool isPictureEnding(std::string_view ending) {
    return std::find(std::begin(PictureEndings), std::end(PictureEndings), ending) !=
           std::end(PictureEndings);
}

bool asksForPicture(std::string_view argument) {
    if (argument.starts_with("--format=")) argument.remove_prefix(9);
    return isPictureEnding(endingOf(argument)) || isPictureEnding("." + std::string(argument));
}

} // namespace telvo::cli
