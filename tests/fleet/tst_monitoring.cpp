// SPDX-License-Identifier: GPL-3.0-or-later

// Two simulated frames, what quorvelctl tells of them, and the programs that watch a fleet: their
// own promtool, node_exporter and Prometheus, on the loopback address.

#include "programs.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QSet>
#include <QTemporaryDir>
#include <QTest>

#include <arpa/inet.h>
#include <array>
#include <memory>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

// A port of the loopback address that nobody uses now; 0 when there is none.
int freePort()
{
    const int socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    auto *raw = reinterpret_cast<sockaddr *>(&address);
    const bool known = ::bind(socket, raw, length) == 0 && ::getsockname(socket, raw, &length) == 0;
    ::close(socket);
    return known ? ntohs(address.sin_port) : 0;
}

QString loopback(int port)
{
    return u"127.0.0.1:%1"_s.arg(port);
}

QString ofMonitoring(const QString &file)
{
    return QStringLiteral(QUORVEL_MONITORING "/") + file;
}

} // namespace

class TestMonitoring : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir place;
    std::array<Server, 2> frames;
    const std::array<QString, 2> names{u"good"_s, u"worn"_s};

    QString port(int frame) const { return place.filePath(names.at(size_t(frame))); }
    QString metricsOf(int frame) const
    {
        return place.filePath(u"metrics/%1.prom"_s.arg(names.at(size_t(frame))));
    }
    Ended measure(int frame)
    {
        return run(QStringLiteral(QUORVELCTL_PROGRAM),
                   {u"metrics"_s, u"--port"_s, port(frame), u"--rate"_s, u"115200"_s, u"--output"_s,
                    metricsOf(frame)});
    }

private slots:
    void initTestCase()
    {
        qputenv("XDG_DATA_HOME", QFile::encodeName(place.path()));
        QVERIFY(QDir(place.path()).mkdir(u"metrics"_s));
        const std::array<QString, 2> profiles{u"current"_s, u"worn"_s};
        for (size_t i = 0; i < frames.size(); ++i) {
            QVERIFY(
                frames[i].start(QStringLiteral(QUORVEL_SIM_PROGRAM),
                                {u"serial"_s, u"--link"_s, port(int(i)), u"--profile"_s,
                                 QStringLiteral(QUORVEL_PROFILES "/%1.profile").arg(profiles[i])}));
            QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(port(int(i))), PatienceMs);
        }
        for (int i = 0; i < 2; ++i) {
            const Ended measured = measure(i);
            QVERIFY2(measured.code == 0, measured.err);
            QCOMPARE(measured.err, QByteArray());
        }
    }

    void promtool_takes_what_is_told()
    {
        for (int i = 0; i < 2; ++i) {
            const Ended checked =
                run(u"promtool"_s, {u"check"_s, u"metrics"_s}, contentOf(metricsOf(i)));
            QVERIFY2(checked.code == 0, checked.err + checked.out);
            QCOMPARE(checked.err, QByteArray());
        }
    }

    void promtool_takes_the_rules()
    {
        const Ended checked =
            run(u"promtool"_s, {u"check"_s, u"rules"_s, ofMonitoring(u"quorvel.rules.yml"_s)});
        QVERIFY2(checked.code == 0, checked.err + checked.out);
        const Ended tested =
            run(u"promtool"_s, {u"test"_s, u"rules"_s, ofMonitoring(u"quorvel.rules.test.yml"_s)});
        QVERIFY2(tested.code == 0, tested.err + tested.out);
    }

    void rules_and_dashboard_speak_of_metrics_that_are_told()
    {
        // The last calibration is told once there was one, trouble while there is some.
        QSet<QString> told{u"quorvel_calibration_deviation_ratio"_s};
        const QRegularExpression name(u"\\bquorvel_[a-z_]+"_s);
        auto found = name.globalMatch(QString::fromUtf8(contentOf(metricsOf(1))));
        while (found.hasNext())
            told.insert(found.next().captured());
        for (const QString &file : {u"quorvel.rules.yml"_s, u"quorvel.json"_s}) {
            const QByteArray text = contentOf(ofMonitoring(file));
            QVERIFY(!text.isEmpty());
            auto used = name.globalMatch(QString::fromUtf8(text));
            QVERIFY(used.hasNext());
            while (used.hasNext()) {
                const QString one = used.next().captured();
                QVERIFY2(told.contains(one), qPrintable(file + u": "_s + one));
            }
        }
    }

    void the_dashboard_has_a_question_in_every_panel()
    {
        const QJsonArray panels =
            QJsonDocument::fromJson(contentOf(ofMonitoring(u"quorvel.json"_s)))
                .object()[u"panels"_s]
                .toArray();
        QVERIFY(!panels.isEmpty());
        for (const QJsonValue &panel : panels)
            QVERIFY2(!panel[u"targets"_s][0][u"expr"_s].toString().isEmpty(),
                     qPrintable(panel[u"title"_s].toString()));
    }

    void a_dead_light_raises_an_alert_for_its_frame_only()
    {
        const int exporterPort = freePort();
        Server exporter;
        QVERIFY(exporter.start(u"prometheus-node-exporter"_s,
                               {u"--collector.disable-defaults"_s, u"--collector.textfile"_s,
                                u"--collector.textfile.directory="_s + place.filePath(u"metrics"_s),
                                u"--web.listen-address="_s + loopback(exporterPort)}));

        const int serverPort = freePort();
        QFile config(place.filePath(u"prometheus.yml"_s));
        QVERIFY(config.open(QIODevice::WriteOnly));
        config.write(u"global:\n"
                     "  scrape_interval: 1s\n"
                     "  evaluation_interval: 1s\n"
                     "rule_files:\n"
                     "  - '%1'\n"
                     "scrape_configs:\n"
                     "  - job_name: node\n"
                     "    static_configs:\n"
                     "      - targets: ['%2']\n"_s
                         .arg(ofMonitoring(u"quorvel.rules.yml"_s), loopback(exporterPort))
                         .toUtf8());
        config.close();
        Server server;
        QVERIFY(
            server.start(u"prometheus"_s, {u"--config.file="_s + config.fileName(),
                                           u"--storage.tsdb.path="_s + place.filePath(u"tsdb"_s),
                                           u"--web.listen-address="_s + loopback(serverPort)}));

        const auto ask = [serverPort](const QString &question) {
            const Ended said = run(u"promtool"_s, {u"query"_s, u"instant"_s,
                                                   u"http://"_s + loopback(serverPort), question});
            return said.code == 0 ? said.out.trimmed() : QByteArray();
        };
        const QString firing = u"ALERTS{alertname=\"TouchFrameLightDead\",alertstate=\"firing\"}"_s;
        QByteArray alerts;
        QTRY_VERIFY_WITH_TIMEOUT(!(alerts = ask(firing)).isEmpty(), PatienceMs);
        QVERIFY2(alerts.contains("frame=\"" + QFile::encodeName(port(1)) + '"'), alerts);
        QVERIFY2(!alerts.contains("frame=\"" + QFile::encodeName(port(0)) + '"'), alerts);
        const QByteArray present = ask(u"quorvel_frame_present == 1"_s);
        QCOMPARE(present.count("quorvel_frame_present{"), 2);
    }

    // Last, since the frame is away then.
    void a_frame_that_went_away_is_told_of_in_its_file()
    {
        frames[0].process.terminate();
        QVERIFY(frames[0].process.waitForFinished());
        QFile::remove(port(0));
        const Ended measured = measure(0);
        QCOMPARE(measured.code, 0);
        QVERIFY(!measured.err.isEmpty());
        const QByteArray text = contentOf(metricsOf(0));
        QVERIFY2(text.contains("quorvel_frame_present{frame=\"" + QFile::encodeName(port(0)) +
                               "\"} 0\n"),
                 text);
        QVERIFY(!text.contains("quorvel_lights{"));
    }
};

QTEST_GUILESS_MAIN(TestMonitoring)
#include "tst_monitoring.moc"
