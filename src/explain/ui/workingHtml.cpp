// SPDX-License-Identifier: GPL-3.0-or-later
#include "explain/ui/workingHtml.h"

#include "base/ui/qtText.h"
#include "explain/workingText.h"

#include <QCoreApplication>
#include <QFontDatabase>

namespace telvo::explain::ui {

using telvo::ui::fromQt;
using telvo::ui::toQt;

namespace {

constexpr char Scheme[] = "step:";

QString tr(const char* text) {
    return QCoreApplication::translate("workingHtml", text);
}

QString escaped(std::string_view text) {
    return toQt(text).toHtmlEscaped();
}

/// A cell in the fixed-pitch font of the reports.
QString cell(const QString& html) {
    return "<td style=\"font-family:'" +
           QFontDatabase::systemFont(QFontDatabase::FixedFont).family().toHtmlEscaped() +
           "'; white-space:pre-wrap;\">" + html + "</td>";
}

QString line(const QString& symbol, const QString& right) {
    return "<tr>" +
           cell(symbol + (symbol.isEmpty() ? "= " : " = "))
               .replace("<td ", "<td align=\"right\" ") +
           cell(right) + "</tr>";
}

QString formulaTable(const Step& step) {
    QString html = "<table cellspacing=\"0\" cellpadding=\"1\">";
    const QString result = "<b>" + escaped(step.result) + "</b>";
    if (step.formula.empty()) return html + line(escaped(step.symbol), result) + "</table>";
    html += line(escaped(step.symbol), escaped(step.formula));
    if (step.substituted != step.formula) html += line({}, escaped(step.substituted));
    if (step.substituted != step.result) html += line({}, result);
    return html + "</table>";
}

QString operandTable(const Step& step, const Chapters& all) {
    if (step.operands.empty()) return {};
    QString html = "<table cellspacing=\"0\" cellpadding=\"1\" style=\"margin-left:16px\">";
    for (const Operand& operand : step.operands) {
        const Step* source = findStep(all, operand.key);
        html += "<tr>" + cell(escaped(operand.symbol) + "&nbsp;&nbsp;") + "<td><a href=\"" +
                linkTo(operand.key).toHtmlEscaped() + "\">" +
                escaped(source ? source->title : operand.key) + "</a>&nbsp;&nbsp;</td>" +
                cell(source ? escaped(source->result) : QString()) + "</tr>";
    }
    return html + "</table>";
}

QString stepHtml(const Step& step, const std::string& note, const Chapters& all) {
    QString html = "<p style=\"margin-bottom:2px\"><a name=\"" + escaped(step.key) + "\"></a><b>" +
                   escaped(step.title) + "</b><br/><small>" + escaped(step.key) + "</small></p>" +
                   formulaTable(step) + operandTable(step, all);
    const auto paragraph = [&](const QString& label, const QString& text) {
        html +=
            "<p style=\"margin-top:2px; margin-bottom:2px\"><i>" + label + "</i> " + text + "</p>";
    };
    if (!step.condition.empty())
        paragraph(tr("Since:"), escaped(step.condition + ", that is " + step.conditionShown));
    if (!step.rule.empty() && step.rule != note) paragraph(tr("Rule:"), escaped(step.rule));
    for (const Printed& printed : step.printed)
        paragraph(tr("Report:"), escaped(printedText(printed)));
    return html;
}

} // namespace

QString workingHtml(const Chapters& shown, const Chapters& all) {
    QString html;
    for (const Chapter& chapter : shown) {
        html += "<h3>" + escaped(chapter.title) + "</h3>";
        if (!chapter.note.empty())
            html += "<p><i>" + tr("Rule:") + "</i> " + escaped(chapter.note) + "</p>";
        for (const Step& step : chapter.steps)
            html += stepHtml(step, chapter.note, all);
    }
    return html;
}

QString linkTo(const std::string& key) {
    return Scheme + toQt(key);
}

std::string keyOfLink(const QString& address) {
    return address.startsWith(Scheme) ? fromQt(address.mid(static_cast<int>(sizeof Scheme) - 1))
                                      : std::string();
}

} // namespace telvo::explain::ui
