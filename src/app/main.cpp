// The window program. Its frame, chooser and wizard come with the shell's forms; until then it opens the
// given data file and reports what it holds.
#include "shell/Folders.h"
#include "shell/OpenDataFile.h"
#include "shell/globals.h"
#include "store/DataFile.h"

#include <QApplication>
#include <QMessageBox>

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("tessorin"));
    MakeUserFolders();
    const QStringList args = QApplication::arguments();
    if (args.size() < 2) {
        QMessageBox::information(nullptr, QStringLiteral("Tessorin"), QStringLiteral("Usage: tessorin PATH"));
        return 1;
    }
    if (!OpenDataFile(args.at(1))) {
        QMessageBox::warning(nullptr, QStringLiteral("Error"), QStringLiteral("Error launching ") + args.at(1));
        return 1;
    }
    QMessageBox::information(nullptr, QStringLiteral("Tessorin ") + ProgramVersionText(),
                             gDatabaseFile + QStringLiteral("\n") + gUser.Animal);
    CloseDatabase();
    return 0;
}
