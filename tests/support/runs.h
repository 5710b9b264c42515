// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QHash>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QSet>
#include <QTest>

#include <memory>
#include <utility>
#include <vector>

// Runs of this program, each in a process of its own, in the order that they are asked for in and
// some ahead. A run is what stands behind "--run" on its command line; its last line is a JSON
// object, which names a "problem" if it came to no end.
class Runs
{
public:
    explicit Runs(int runsAtOnce)
        : atOnce(runsAtOnce)
    {
    }
    Runs(const Runs &) = delete;
    Runs &operator=(const Runs &) = delete;
    ~Runs()
    {
        for (const auto &[key, process] : running) {
            process->kill();
            process->waitForFinished();
        }
    }
    void add(const QStringList &run)
    {
        if (!known.contains(run))
            waiting += run;
        known.insert(run);
    }
    QJsonObject take(const QStringList &run)
    {
        while (!results.contains(run)) {
            while (int(running.size()) < atOnce && !waiting.isEmpty())
                begin(waiting.takeFirst());
            QTest::qWait(20);
            std::erase_if(running,
                          [this](const auto &one) { return hasEnded(one.first, *one.second); });
        }
        return results.take(run);
    }

private:
    void begin(const QStringList &run)
    {
        auto process = std::make_unique<QProcess>();
        process->start(QCoreApplication::applicationFilePath(),
                       QStringList{QStringLiteral("--run")} + run);
        since[run].start();
        running.emplace_back(run, std::move(process));
    }
    bool hasEnded(const QStringList &run, QProcess &process)
    {
        if (process.state() != QProcess::NotRunning) {
            if (!since[run].hasExpired(MostMs))
                return false;
            process.kill();
            process.waitForFinished();
        }
        QJsonObject result =
            QJsonDocument::fromJson(process.readAllStandardOutput().split('\n').last()).object();
        if (process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0 ||
            result.isEmpty())
            result = {
                {QStringLiteral("problem"), QStringLiteral("it crashed, or hung: ") +
                                                QString::fromUtf8(process.readAllStandardError())}};
        results[run] = result;
        return true;
    }

    static constexpr int MostMs = 120000; // of a run

    const int atOnce;
    QSet<QStringList> known;
    QList<QStringList> waiting;
    std::vector<std::pair<QStringList, std::unique_ptr<QProcess>>> running;
    QHash<QStringList, QElapsedTimer> since;
    QHash<QStringList, QJsonObject> results;
};
