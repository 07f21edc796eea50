// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>

namespace telvo::app::ui {

/// The commands of the main menu, by name. Captions, order and object names are rows of
/// frmMain_menus.cpp; frmMain::action() gives the entry itself.
enum class MenuEntry : std::size_t {
    New,
    Open,
    Save,
    SaveAs,
    ImportSibling,
    RecoverDiscarded, ///< a menu: the copies that are kept
    PrinterSetup,
    Print,
    PrintPreview,
    ViewSourceFiles,
    Exit,
    Description,
    Parameters,
    StabilityFactors,
    Graph,       ///< a menu: one entry per graph, frmMain::graphAction()
    WhatMatters, ///< the first of the studies, in the order of their pages
    TableOfValues,
    FindValue,
    DesignChart,
    Scenarios,
    Compare,
    HowSure,
    ShareCurve,
    Settings,
    Options,
    UnitConversion,
    FileConversion,
    ClearHistory,
    ShowHistory,
    CopyHistory,
    HelpContents,
    HelpIndex,
    HelpPdf,
    ResourceFiles,
    Disclaimer,
    Updates,
    About
};
inline constexpr std::size_t MenuEntries = static_cast<std::size_t>(MenuEntry::About) + 1;

} // namespace telvo::app::ui
