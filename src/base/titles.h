// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string_view>

/// What the windows are called. A message box of a window is titled with the window's prefix and
/// one of the kinds "Range Error", "Range Warning", "Invalid Character", "Error", "Logic Error",
/// "Message".
namespace telvo::titles {

inline constexpr std::string_view Program = "TELVO";
inline constexpr std::string_view ProjectDescription = "Project Description: ";
inline constexpr std::string_view ProjectParameters = "Project Parameters: ";
inline constexpr std::string_view ProgramOptions = "Program Options: ";
inline constexpr std::string_view Settings = "Settings: ";
inline constexpr std::string_view UnitConversion = "Unit Conversion: ";
inline constexpr std::string_view FileConversion = "File Conversion: ";
inline constexpr std::string_view GraphOptions = "Graph Options: ";
inline constexpr std::string_view Graph = "Graph: ";
inline constexpr std::string_view Results = "Results: ";
inline constexpr std::string_view ShowWorking = "Show Working: ";
inline constexpr std::string_view Print = "Print: ";
inline constexpr std::string_view PrintPreview = "Print Preview: ";
inline constexpr std::string_view Plots = "Plots: ";
inline constexpr std::string_view Export = "Export: ";
inline constexpr std::string_view TextBrowser = "Text Browser: ";
inline constexpr std::string_view ResourceFiles = "Resource Files: ";
inline constexpr std::string_view Import = "Import: ";
inline constexpr std::string_view Studies = "Studies: ";

inline constexpr std::string_view InvalidCharacter = "Invalid Character";
inline constexpr std::string_view RangeWarning = "Range Warning";
inline constexpr std::string_view Error = "Error";
inline constexpr std::string_view Message = "Message";

} // namespace telvo::titles
