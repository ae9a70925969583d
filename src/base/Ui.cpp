// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/Ui.h"

namespace Ui {

namespace {

std::unique_ptr<Service>& installed()
{
    static std::unique_ptr<Service> current;
    return current;
}

// A trailing "(...)" of a description that lists patterns, which Qt would otherwise read as the filter.
QString withoutPatternList(const QString& description)
{
    const QString d = description.trimmed();
    if (!d.endsWith(QLatin1Char(')')))
        return d;
    const qsizetype open = d.lastIndexOf(QLatin1Char('('));
    if (open < 0 || !d.mid(open).contains(QLatin1Char('*')))
        return d;
    return d.left(open).trimmed();
}

QString qtPatterns(const QString& pipedPatterns)
{
    QStringList patterns;
    for (const QString& p : pipedPatterns.split(QLatin1Char(';'), Qt::SkipEmptyParts)) {
        const QString pattern = p.trimmed();
        if (pattern.isEmpty())
            continue;
        // "*.*" would ask for a dot; it means every file.
        patterns << (pattern == QLatin1String("*.*") ? QStringLiteral("*") : pattern);
    }
    return patterns.isEmpty() ? QStringLiteral("*") : patterns.join(QLatin1Char(' '));
}

} // namespace

Service& service()
{
    static SilentService silent; // until the program installs its own
    Service* current = installed().get();
    return current ? *current : silent;
}

void install(std::unique_ptr<Service> s)
{
    installed() = std::move(s);
}

std::unique_ptr<Service> replace(std::unique_ptr<Service> s)
{
    std::unique_ptr<Service> previous = std::move(installed());
    installed() = std::move(s);
    return previous;
}

Answer message(const QString& text, Buttons buttons, Icon icon, const QString& title)
{
    return service().message(text, buttons, icon, title);
}

QString input(const QString& prompt, const QString& title, const QString& defaultText)
{
    return service().input(prompt, title, defaultText);
}

QString openFile(const QString& title, const QString& filter, const QString& folder)
{
    return service().openFile(title, filter, folder);
}

QString saveFile(const QString& title, const QString& filter, const QString& folder, const QString& defaultName)
{
    return service().saveFile(title, filter, folder, defaultName);
}

QString chooseFolder(const QString& title, const QString& folder)
{
    return service().chooseFolder(title, folder);
}

bool showPath(const QString& pathOrUrl)
{
    return service().openPath(pathOrUrl);
}

bool showPathOrSay(const QString& pathOrUrl)
{
    if (showPath(pathOrUrl))
        return true;
    message(QStringLiteral("No program on this computer is set to open\n") + pathOrUrl +
                QStringLiteral("\nOpen it from your file manager instead."),
            Buttons::Ok, Icon::Exclamation, QStringLiteral("Error"));
    return false;
}

void status(const QString& text)
{
    service().status(text);
}

QString qtFilter(const QString& pipedFilter)
{
    const QStringList parts = pipedFilter.split(QLatin1Char('|'));
    if (pipedFilter.trimmed().isEmpty())
        return QString();
    QStringList filters;
    for (qsizetype i = 0; i < parts.size(); i += 2) {
        if (i + 1 == parts.size() && withoutPatternList(parts[i]) != parts[i].trimmed()) {
            filters << parts[i].trimmed(); // already in Qt's form
            break;
        }
        const QString description = withoutPatternList(parts[i]);
        const QString patterns = qtPatterns(i + 1 < parts.size() ? parts[i + 1] : QString());
        filters << (description.isEmpty() ? patterns : description + QStringLiteral(" (") + patterns + QLatin1Char(')'));
    }
    return filters.join(QStringLiteral(";;"));
}

} // namespace Ui
