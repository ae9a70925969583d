// SPDX-License-Identifier: GPL-3.0-or-later
#include "printing/PrintSettings.h"

bool PrintSettings::fieldChosen(int row, int column) const
{
    const int p = kFieldColumns * row + column;
    return p >= 0 && p < FieldChoices.size() && FieldChoices.at(p) == QLatin1Char('1');
}

bool PrintSettings::titlesHidden(int column) const
{
    const int p = column == 3 ? 45 : column == 4 ? 46 : -1;
    return p >= 0 && p < FieldChoices.size() && FieldChoices.at(p) == QLatin1Char('1');
}

std::array<int, kFieldRows> PrintSettings::fieldOrderRows() const
{
    std::array<int, kFieldRows> rows{};
    for (int k = 0; k < kFieldRows; ++k) {
        const int digit = k < fieldOrder.size() ? fieldOrder.at(k).digitValue() : -1;
        rows[k] = digit >= 1 && digit <= kFieldRows ? digit - 1 : -1;
    }
    return rows;
}

PrintSettings DefaultPrintSettings()
{
    // The member defaults are the values every built-in layout shares; "Default" adds only these.
    PrintSettings s;
    s.Orientation = 1;
    s.generationChoice = 1;
    s.picsize = 100;
    s.FontSize = 9;
    s.SubjectFontSize = 9;
    s.wrapLength = 40;
    return s;
}

std::optional<TemplateColour> ParseTemplateColour(const QString& text)
{
    const QString t = text.trimmed();
    bool ok = false;
    qint64 value = 0;
    if (t.startsWith(QLatin1String("&H"), Qt::CaseInsensitive)) {
        QString digits = t.mid(2);
        if (digits.endsWith(QLatin1Char('&')))
            digits.chop(1);
        value = qint64(digits.toUInt(&ok, 16));
    } else {
        value = t.toLongLong(&ok);
    }
    if (!ok || value < 0 || value > 0xFFFFFFFFLL)
        return std::nullopt;
    TemplateColour c;
    if (value & 0x80000000LL) {
        c.system = true;
        c.index = int(value & 0xFF);
        return c;
    }
    c.red = int(value & 0xFF);
    c.green = int((value >> 8) & 0xFF);
    c.blue = int((value >> 16) & 0xFF);
    return c;
}
