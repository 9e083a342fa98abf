// SPDX-License-Identifier: MIT
// Runs every action with each library function that it calls, faulty in every way. Each cell runs
// in its own process, several in parallel. Prints the outcomes as a Markdown table. Fails if a cell
// crashes, hangs, loses an armed frame or does not recover.
//
//   fault_matrix [--faults error,slow,hang,hostile] [--actions <name>,...] [--jobs 8] [--seeds 3]
//                [--slow-ms 2000] [--hang-ms 3000] [--cell-seconds 300] [--inside 1]
#include "tests/faults/Cell.h"
#include "tests/support/Arguments.h"

#include <QElapsedTimer>
#include <QMap>
#include <QProcess>
#include <QTextStream>

#include <algorithm>
#include <cstdio>
#include <deque>

using namespace faults;

namespace {

struct Fault {
    const char *name;
    Kind kind;
};

constexpr Fault kinds[] = {
    {"error", Kind::Error}, {"slow", Kind::Slow}, {"hang", Kind::Hang}, {"hostile", Kind::Hostile}};

/// Functions listed in a row of the table; a longer list becomes a number.
constexpr int maxNamed = 12;

struct Job {
    QString action;
    QString function;
    QString fault;
};

struct Result {
    Job job;
    QString words;
    QString trouble;
};

class Matrix {
public:
    Matrix(int argc, char **argv) : m_argc(argc), m_argv(argv) { m_timing = readTiming(); }

    /// Runs one cell in this process and prints its outcome.
    int runOne(const QString &cell);
    /// Runs all cells as processes and prints the table.
    int runAll();

private:
    struct Running {
        Job job;
        std::unique_ptr<QProcess> process;
        QElapsedTimer since;
    };

    Timing readTiming() const;
    long option(const char *name, long usual) const
    {
        return viewertest::argument(m_argc, m_argv, name, usual);
    }
    QString text(const char *name, const char *usual) const
    {
        return QString::fromStdString(viewertest::textArgument(m_argc, m_argv, name, usual));
    }
    std::deque<Job> jobs() const;
    void runInside(const std::deque<Job> &jobs);
    void runInProcesses(std::deque<Job> jobs);
    Running begin(const Job &job) const;
    bool isOver(Running &running, Result *result) const;
    void take(const Result &result);
    void printTable() const;

    const int m_argc;
    char **const m_argv;
    Timing m_timing;
    std::vector<Result> m_results;
};

Timing Matrix::readTiming() const
{
    return {std::chrono::milliseconds(option("slow-ms", 2000)),
            std::chrono::milliseconds(option("hang-ms", 3000)),
            static_cast<unsigned>(option("seeds", 3))};
}

Outcome outcomeOf(const Job &job, const Timing &timing)
{
    const Action *action = findAction(job.action.toStdString());
    const auto kind = std::find_if(std::begin(kinds), std::end(kinds),
                                   [&](const Fault &fault) { return job.fault == fault.name; });
    if (action == nullptr || kind == std::end(kinds))
        return {{}, QStringLiteral("no such cell")};
    return runCell(*action, job.function.toStdString(), kind->kind, timing);
}

int Matrix::runOne(const QString &cell)
{
    const QStringList parts = cell.split('|');
    const Outcome outcome = outcomeOf({parts.value(0), parts.value(1), parts.value(2)}, m_timing);
    std::printf("OUTCOME|%s|%s\n", qPrintable(outcome.words), qPrintable(outcome.trouble));
    return outcome.trouble.isEmpty() ? 0 : 1;
}

std::deque<Job> Matrix::jobs() const
{
    const QStringList faults = text("faults", "error,slow,hang,hostile").split(',');
    const QString wanted = text("actions", "");
    std::deque<Job> all;
    for (const Action &action : actions()) {
        const QString name = QString::fromStdString(std::string(action.name));
        if (!wanted.isEmpty() && !wanted.split(';').contains(name))
            continue;
        for (const std::string &function : functionsOf(action)) {
            for (const QString &fault : faults)
                all.push_back({name, QString::fromStdString(function), fault});
        }
    }
    return all;
}

void Matrix::take(const Result &result)
{
    m_results.push_back(result);
    if (!result.trouble.isEmpty())
        std::printf("TROUBLE: %s, %s, %s: %s\n", qPrintable(result.job.action),
                    qPrintable(result.job.function), qPrintable(result.job.fault),
                    qPrintable(result.trouble));
    if (m_results.size() % 50 == 0)
        std::fprintf(stderr, "%zu cells\n", m_results.size());
}

void Matrix::runInside(const std::deque<Job> &jobs)
{
    for (const Job &job : jobs) {
        // Print first: the cell may crash.
        std::fprintf(stderr, "%s | %s | %s\n", qPrintable(job.action), qPrintable(job.function),
                     qPrintable(job.fault));
        const Outcome outcome = outcomeOf(job, m_timing);
        take({job, outcome.words, outcome.trouble});
    }
}

Matrix::Running Matrix::begin(const Job &job) const
{
    Running running{job, std::make_unique<QProcess>(), {}};
    QStringList arguments;
    for (int i = 1; i < m_argc; ++i)
        arguments << QString::fromLocal8Bit(m_argv[i]);
    arguments << "--cell" << QStringList{job.action, job.function, job.fault}.join('|');
    running.since.start();
    running.process->setProcessChannelMode(QProcess::MergedChannels);
    running.process->start(QCoreApplication::applicationFilePath(), arguments);
    return running;
}

bool Matrix::isOver(Running &running, Result *result) const
{
    QProcess &process = *running.process;
    *result = {running.job, {}, {}};
    if (process.state() != QProcess::NotRunning) {
        if (running.since.elapsed() < option("cell-seconds", 300) * 1000)
            return false;
        process.kill();
        process.waitForFinished();
        result->trouble = QStringLiteral("did not end");
        return true;
    }
    const QString output = QString::fromUtf8(process.readAll());
    const QStringList words =
        output.section(QStringLiteral("OUTCOME|"), 1).section('\n', 0, 0).split('|');
    result->words = words.value(0);
    result->trouble = words.value(1);
    if (process.exitStatus() == QProcess::CrashExit || words.size() < 2)
        result->trouble = QStringLiteral("crashed: ") + output.right(2000);
    return true;
}

void Matrix::runInProcesses(std::deque<Job> jobs)
{
    std::vector<Running> running;
    const auto most = static_cast<std::size_t>(option("jobs", 8));
    while (!jobs.empty() || !running.empty()) {
        while (!jobs.empty() && running.size() < most) {
            running.push_back(begin(jobs.front()));
            jobs.pop_front();
        }
        QTest::qWait(20);
        for (auto one = running.begin(); one != running.end();) {
            Result result;
            if (!isOver(*one, &result)) {
                ++one;
                continue;
            }
            take(result);
            one = running.erase(one);
        }
    }
}

/// Merges rows of the same action with the same outcomes.
void Matrix::printTable() const
{
    const QStringList faults = text("faults", "error,slow,hang,hostile").split(',');
    QMap<QString, QMap<QString, QMap<QString, QString>>> cells; // action, function, fault
    QMap<QString, QStringList> order;
    for (const Result &one : m_results) {
        cells[one.job.action][one.job.function][one.job.fault] =
            one.trouble.isEmpty() ? one.words : "**" + one.trouble.left(60).simplified() + "**";
    }
    QTextStream out(stdout);
    out << "| action | functions at fault | " << faults.join(" | ") << " |\n|---|---|";
    for (int i = 0; i < faults.size(); ++i)
        out << "---|";
    out << '\n';
    for (const Action &action : actions()) {
        const auto functions = cells.value(QString::fromStdString(std::string(action.name)));
        QMap<QString, QStringList> rows; // outcomes, functions
        for (auto function = functions.begin(); function != functions.end(); ++function) {
            QStringList outcomes;
            for (const QString &fault : faults)
                outcomes << function->value(fault);
            rows[outcomes.join(" | ")] << "`" + function.key().mid(7) + "`";
        }
        const QString many =
            rows.size() > 1 ? QStringLiteral("%1 others") : QStringLiteral("all %1");
        for (auto row = rows.begin(); row != rows.end(); ++row)
            out << "| " << QString::fromStdString(std::string(action.name)) << " | "
                << (row->size() > maxNamed ? many.arg(row->size()) : row->join(", ")) << " | "
                << row.key() << " |\n";
    }
}

int Matrix::runAll()
{
    QElapsedTimer timer;
    timer.start();
    const std::deque<Job> all = jobs();
    if (option("inside", 0) != 0)
        runInside(all);
    else
        runInProcesses(all);
    printTable();
    const auto troubled = std::count_if(m_results.begin(), m_results.end(),
                                        [](const Result &one) { return !one.trouble.isEmpty(); });
    std::printf("%zu cells, %ld in trouble, %.0f s\n", m_results.size(),
                static_cast<long>(troubled), static_cast<double>(timer.elapsed()) / 1000);
    return troubled == 0 && !m_results.empty() ? 0 : 1;
}

} // namespace

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    Matrix matrix(argc, argv);
    const std::string cell = viewertest::textArgument(argc, argv, "cell", "");
    return cell.empty() ? matrix.runAll() : matrix.runOne(QString::fromStdString(cell));
}
