// SPDX-License-Identifier: GPL-3.0-or-later
#include "base/Platform.h"

#include <QFile>
#include <QStringList>
#include <QSysInfo>

namespace {

ScreenSizeProvider screenSizeProvider = nullptr;

// os-release values follow shell quoting: double or single quotes, backslash escapes inside double ones.
QString unquote(const QString& value)
{
    if (value.size() >= 2 && value.front() == QLatin1Char('\'') && value.back() == QLatin1Char('\''))
        return value.mid(1, value.size() - 2);
    if (value.size() >= 2 && value.front() == QLatin1Char('"') && value.back() == QLatin1Char('"')) {
        QString out;
        const QString inner = value.mid(1, value.size() - 2);
        for (qsizetype i = 0; i < inner.size(); ++i) {
            if (inner[i] == QLatin1Char('\\') && i + 1 < inner.size())
                ++i;
            out += inner[i];
        }
        return out;
    }
    return value;
}

QString prettyNameFromFile(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return QString();
    return OsReleasePrettyName(QString::fromUtf8(file.readAll()));
}

} // namespace

QString OsReleasePrettyName(const QString& osReleaseText)
{
    const QStringList lines = osReleaseText.split(QLatin1Char('\n'));
    for (const QString& raw : lines) {
        const QString line = raw.trimmed();
        if (line.startsWith(QLatin1String("PRETTY_NAME=")))
            return unquote(line.mid(12).trimmed()).trimmed();
    }
    return QString();
}

QString GetPlatformName()
{
    for (const QString& path : {QStringLiteral("/etc/os-release"), QStringLiteral("/usr/lib/os-release")}) {
        const QString name = prettyNameFromFile(path);
        if (!name.isEmpty())
            return name;
    }
    return QSysInfo::prettyProductName();
}

QString CountryNameOf(const QLocale& locale)
{
    if (locale.territory() == QLocale::AnyTerritory)
        return QString();
    return QLocale::territoryToString(locale.territory());
}

QString GetCountryName()
{
    return CountryNameOf(QLocale::system());
}

void SetScreenSizeProvider(ScreenSizeProvider provider)
{
    screenSizeProvider = provider;
}

QString GetScreenSize()
{
    return screenSizeProvider ? screenSizeProvider() : QString();
}
