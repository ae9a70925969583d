// SPDX-License-Identifier: GPL-3.0-or-later
#include "shell/Main.h"

#include "base/Folders.h"
#include "base/Platform.h"
#include "base/Ui.h"
#include "shell/frmSplash.h"

#include <QLockFile>
#include <QProcess>
#include <memory>

namespace {

std::unique_ptr<QLockFile> gInstanceLock;

const QString kDataFileMimeType = QStringLiteral("application/x-tessorin-data");

} // namespace

QString InstanceLockPath()
{
    return gSettingsFolder + QStringLiteral("tessorin.lock");
}

bool TakeInstanceLock(const QString& lockPath)
{
    auto lock = std::make_unique<QLockFile>(lockPath);
    // A running copy holds its lock for hours: only a lock whose process is gone counts as stale, never
    // one that is merely old.
    lock->setStaleLockTime(0);
    if (!lock->tryLock(0))
        return false;
    gInstanceLock = std::move(lock);
    return true;
}

void ReleaseInstanceLock()
{
    gInstanceLock.reset();
}

QString CommandLinePath(const QStringList& arguments)
{
    QString path = arguments.value(1);
    if (path.size() >= 2 && path.startsWith(QLatin1Char('"')) && path.endsWith(QLatin1Char('"')))
        path = path.mid(1, path.size() - 2);
    return path;
}

QString GetAssociation(const QString& extension)
{
    if (extension.compare(QLatin1String("cav"), Qt::CaseInsensitive) != 0)
        return QString();
    QProcess process;
    process.start(QStringLiteral("xdg-mime"), {QStringLiteral("query"), QStringLiteral("default"), kDataFileMimeType});
    if (!process.waitForStarted(2000))
        return QString();
    if (!process.waitForFinished(3000)) {
        process.kill();
        process.waitForFinished(1000);
        return QString();
    }
    if (process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0)
        return QString();
    return QString::fromLocal8Bit(process.readAllStandardOutput()).trimmed();
}

QString ScreenResolutionMessage(const QString& resolution)
{
    if (resolution != QLatin1String("640 x 480") && resolution != QLatin1String("800 x 600"))
        return QString();
    return QStringLiteral("This program requires a minimum screen resolution of 1024 x 768\n"
                          "Some parts of the forms will not be visible and printouts won't display all details at ") +
           resolution + QStringLiteral(" resolution.");
}

void CheckScreenResolution()
{
    const QString text = ScreenResolutionMessage(GetScreenSize());
    if (!text.isEmpty())
        Ui::message(text, Ui::Buttons::Ok, Ui::Icon::Exclamation, kScreenResolutionTitle);
}

bool Main(const QStringList& arguments, const QString& lockPath)
{
    // A second start ends here, even when a data file was double-clicked: the file is not passed on to
    // the copy that runs.
    if (!TakeInstanceLock(lockPath))
        return false;
    // The desktop's answer changes nothing: whether the type is registered or not, the program starts
    // the same way.
    [[maybe_unused]] const QString association = GetAssociation(QStringLiteral("cav"));
    CheckScreenResolution();
    auto* splash = new frmSplash(CommandLinePath(arguments));
    splash->show();
    return true;
}
