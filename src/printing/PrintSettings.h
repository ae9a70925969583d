// SPDX-License-Identifier: GPL-3.0-or-later
// A print template ("layout"): fonts, colours, the fields each generation of a pedigree shows and
// their order, pictures and connectors. The built-in layouts are made by code; a user's own layouts are
// rows of the table `print` with the same contents.
#pragma once

#include <QString>
#include <array>
#include <optional>

inline constexpr int kFieldRows = 9;       // breed, colour, registration, custom fields 1 to 6
inline constexpr int kFieldColumns = 5;    // the subject, then four generations of ancestors
inline constexpr int kFieldChoiceCount = 47;

class PrintSettings {
public:
    QString name; // stored form
    double Orientation = 1;
    double Margin = 5;
    double FontSize = 9;
    QString FontName = QStringLiteral("Arial");
    QString FontColour = QStringLiteral("&H80000012");
    int FontBold = 0, FontItalic = 0;
    double SubjectFontSize = 9;
    QString SubjectFontName = QStringLiteral("Arial");
    QString SubjectFontColour = QStringLiteral("&H80000012");
    int SubjectFontBold = 0, SubjectFontItalic = 0;
    double TitleFontSize = 18;
    QString TitleFontName = QStringLiteral("Arial");
    QString TitleFontColour = QStringLiteral("128");
    int TitleFontBold = 0, TitleFontItalic = 0;
    int ShowBorder = 1;
    int WhichGraphic = 0;
    int ShowShadow = 0;
    double picsize = 100;
    QString LineColour = QStringLiteral("&H80000012");
    int generationChoice = 1;
    QString FieldChoices = QStringLiteral("10000111111111100000000000000000000000000000011");
    double picLeft = 0, picTop = 0;
    QString objectPositions;
    QString background;
    QString logo;
    int highlightChampions = 1;
    QString ChampionColour = QStringLiteral("255");
    double logoSize = 100;
    QString fieldOrder = QStringLiteral("123456789");
    // Held by the designer's controls, not by a column.
    int wrapLength = 40;
    QString strConnectors = QStringLiteral("Straight Space");

    // Whether chkPrint(5 * row + column) is ticked.
    bool fieldChosen(int row, int column) const;
    // The two "Hide Field Titles:" boxes, for columns 3 and 4 only.
    bool titlesHidden(int column) const;
    // The nine rows in the order their lines are joined (0-based rows); a digit that is no row 1 to 9
    // stands for no line.
    std::array<int, kFieldRows> fieldOrderRows() const;
};

// The layout "Default", the one the family tree page draws with.
PrintSettings DefaultPrintSettings();

// A colour as the templates write it: "&H80000012" is a colour of the desktop's scheme (its index in
// the low byte), any other number is blue * 65536 + green * 256 + red.
struct TemplateColour {
    bool system = false;
    int index = 0;          // the scheme's colour index when system
    int red = 0, green = 0, blue = 0;
};
// nullopt for a text that is no colour number.
std::optional<TemplateColour> ParseTemplateColour(const QString& text);
