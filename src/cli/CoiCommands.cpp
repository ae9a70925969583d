// SPDX-License-Identifier: GPL-3.0-or-later
// tessorin-cli coi: the inbreeding calculator's Calculate for one animal or a test mating, and its bulk
// runs over all records or the current stock, without the question before them.
#include "cli/CliSupport.h"
#include "cli/Commands.h"
#include "genetics/Calculator.h"
#include "genetics/Coefficient.h"
#include "session/OpenDataFile.h"
#include "base/Ui.h"
#include "session/globals.h"
#include "store/DataFile.h"

#include <QFileInfo>
#include <cstdio>

namespace {

// Rows as the calculator's list receives them, printed as they come; a bulk run's row once its
// coefficient is known, or as it stands when the run ends early.
class PrintingView : public CoefficientView {
public:
    PrintingView(QTextStream& out, qint16 generations) : out(out), generations(QString::number(generations)) {}

    void addAncestorRow(const AncestorRow& row) override
    {
        out << EscapeField(row.name) << '\t' << row.sireGeneration << '\t' << row.damGeneration << '\t'
            << row.contribution << '\n';
    }
    QString generationsText() const override { return generations; }
    void setGenerationsText(const QString& text) override { generations = text; }
    void addRecordRow(const QString& name, const QString& breed, const QString& sex) override
    {
        flushPending();
        pending = {EscapeField(name), EscapeField(breed), EscapeField(sex), QString()};
    }
    void setRecordCoefficient(const QString& text) override
    {
        if (pending.isEmpty())
            return;
        pending[3] = text;
        flushPending();
    }
    void flushPending()
    {
        if (pending.isEmpty())
            return;
        out << pending.join(QLatin1Char('\t')) << '\n';
        out.flush();
        pending.clear();
    }

private:
    QTextStream& out;
    QString generations;
    QStringList pending;
};

} // namespace

int cmdCoi(const CommandLine& cl, QTextStream& out)
{
    const bool all = cl.flag(QStringLiteral("all"));
    const bool mine = cl.flag(QStringLiteral("mine"));
    const bool mating = cl.has(QStringLiteral("sire")) || cl.has(QStringLiteral("dam"));
    if (all && mine)
        usage(QStringLiteral("coi takes --all or --mine, not both"));
    if ((all || mine) && mating)
        usage(QStringLiteral("coi takes --sire and --dam, or --all or --mine, not both"));
    if (mating && !(cl.has(QStringLiteral("sire")) && cl.has(QStringLiteral("dam"))))
        usage(QStringLiteral("A test mating needs both --sire S and --dam D"));
    if (all || mine || mating)
        cl.expect({QStringLiteral("PATH")});
    else
        cl.expect({QStringLiteral("PATH"), QStringLiteral("NAME")});
    const qint16 generations = qint16(cl.number(QStringLiteral("generations"), 6, -32768, 32767));

    const OpenedDataFile file(cl.at(0));
    PrintingView view(out, generations);
    {
        if (all || mine) {
            QString stopped;
            const bool completed = UpdateCoefficients(Calculator::BulkQuery(mine), view, &stopped);
            view.flushPending();
            if (!completed)
                fail(QStringLiteral("Update All stopped before the end: ") + stopped);
            out << "Operation completed\n";
        } else {
            const QString male = mating ? cl.value(QStringLiteral("sire")) : QString();
            const QString female = mating ? cl.value(QStringLiteral("dam")) : QString();
            std::optional<Calculator::Choice> choice =
                mating ? Calculator::ChooseCalculation(male, female)
                       : Calculator::Choice{EncodeText(cl.at(1)), QString(), QString()};
            double f = 0;
            if (choice)
                f = CalculateCoefficient(choice->name, choice->sire, choice->dam, generations, true, true, &view);
            out << Calculator::CoefficientText(f) << '\n';
        }
    }
    return kExitOk;
}
