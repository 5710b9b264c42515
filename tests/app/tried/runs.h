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

namespace tried {

using namespace Qt::StringLiterals;

// Runs in processes of their own, in the order that they are asked for in, some ahead.
class Runs
{
public:
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
            while (int(running.size()) < RunsAtOnce && !waiting.isEmpty())
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
        process->start(QCoreApplication::applicationFilePath(), QStringList{u"--run"_s} + run);
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
            result = {{u"problem"_s, u"it crashed, or hung: "_s +
                                         QString::fromUtf8(process.readAllStandardError())}};
        results[run] = result;
        return true;
    }

    static constexpr int RunsAtOnce = 8;
    static constexpr int MostMs = 120000; // of a run

    QSet<QStringList> known;
    QList<QStringList> waiting;
    std::vector<std::pair<QStringList, std::unique_ptr<QProcess>>> running;
    QHash<QStringList, QElapsedTimer> since;
    QHash<QStringList, QJsonObject> results;
};

} // namespace tried
