// SPDX-License-Identifier: GPL-3.0-or-later

// What a compositor says of its outputs, by one that this test plays itself: its words are written
// here byte by byte.

#include "dialogs/waylandoutputs.h"
#include "modules/module.h"
#include "tests/support/quickest.h"

#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QFile>
#include <QScopedValueRollback>
#include <QTemporaryDir>
#include <QTest>

#include <dlfcn.h>

#include <algorithm>
#include <chrono>
#include <cstring>
#include <memory>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <thread>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

// Who reads more slowly than others write never finds nothing to read.
bool readsSlowly = false;

struct Mode
{
    quint32 flags; // 1: it is the one of now, 2: it is preferred
    quint32 width;
    quint32 height;
};

struct Output
{
    QByteArray name; // none: it is too old to tell one
    quint32 transform;
    QList<Mode> modes;
    quint32 version = name.isEmpty() ? 3 : 4;
    bool hasPlace = true; // and tells it, with how it is turned
};

// After so many answers a compositor says nothing more.
struct Patience
{
    int answers = 100;
    bool goesAway = false;
    bool inPieces = false; // says each of them
    bool chatters = false; // says other things for ten seconds before each of them
};

QByteArray number(quint32 value)
{
    return {reinterpret_cast<const char *>(&value), sizeof value};
}

// Its length, its letters and a zero, filled up to whole words.
QByteArray text(QByteArray letters)
{
    letters += '\0';
    const QByteArray length = number(quint32(letters.size()));
    while (letters.size() % 4 != 0)
        letters += '\0';
    return length + letters;
}

quint32 numberAt(const QByteArray &bytes, qsizetype at)
{
    quint32 value = 0;
    std::memcpy(&value, bytes.constData() + at, sizeof value);
    return value;
}

// Listens at a socket, for one program that asks for the outputs.
class Compositor
{
public:
    // Without outputs it never says anything.
    Compositor(const QByteArray &path, QList<Output> theOutputs, const Patience &thePatience)
        : outputs(std::move(theOutputs))
        , patience(thePatience)
    {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        std::memcpy(address.sun_path, path.constData(), size_t(path.size()));
        listening = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
        isListening =
            ::bind(listening, reinterpret_cast<sockaddr *>(&address), sizeof address) == 0 &&
            ::listen(listening, 1) == 0;
        thread = std::thread([this] { serve(); });
    }
    Compositor(const Compositor &) = delete;
    Compositor &operator=(const Compositor &) = delete;
    ~Compositor()
    {
        ::shutdown(listening, SHUT_RDWR); // nobody may have come
        thread.join();
        ::close(listening);
    }
    bool isListening = false;

private:
    void serve()
    {
        line = ::accept(listening, nullptr, nullptr);
        QByteArray heard;
        char bytes[1024];
        for (ssize_t count = 0; (count = ::read(line, bytes, sizeof bytes)) > 0;) {
            heard.append(bytes, count);
            while (heard.size() >= 8 && heard.size() >= qsizetype(numberAt(heard, 4) >> 16)) {
                const auto size = qsizetype(numberAt(heard, 4) >> 16);
                const bool isEnd = numberAt(heard, 0) == 1 && (numberAt(heard, 4) & 0xFFFF) == 0;
                if (isEnd && patience.answers-- == 0) {
                    if (patience.goesAway) {
                        ::close(line);
                        return;
                    }
                    outputs.clear();
                }
                if (isEnd && patience.chatters)
                    chatter();
                if (!outputs.isEmpty())
                    answer(numberAt(heard, 0), numberAt(heard, 4) & 0xFFFF, heard.mid(8, size - 8));
                heard.remove(0, size);
            }
        }
        ::close(line);
    }
    void tell(quint32 object, quint32 event, const QByteArray &words) const
    {
        QByteArray bytes = number(object) + number(quint32(words.size() + 8) << 16 | event) + words;
        if (patience.inPieces) {
            say(bytes.first(4));
            bytes.remove(0, 4);
            std::this_thread::sleep_for(std::chrono::milliseconds(5)); // it is read meanwhile
        }
        say(bytes);
    }
    void say(const QByteArray &bytes) const
    {
        if (::send(line, bytes.constData(), size_t(bytes.size()), MSG_NOSIGNAL) != bytes.size())
            qWarning("the program does not listen");
    }
    void chatter() const
    {
        const QByteArray gone = number(registry) + number(12 << 16 | 1) + number(99);
        const QDeadlineTimer end(10s);
        while (!end.hasExpired() &&
               ::send(line, gone.constData(), size_t(gone.size()), MSG_NOSIGNAL) >= 0)
            std::this_thread::sleep_for(1ms);
    }
    void answer(quint32 object, quint32 request, const QByteArray &words)
    {
        if (object == 1 && request == 0) { // all that was asked before has been answered
            tell(numberAt(words, 0), 0, number(0));
            tell(1, 1, words.first(4));
        } else if (object == 1 && request == 1) { // what there is
            registry = numberAt(words, 0);
            tell(registry, 0, number(7) + text("wl_seat") + number(1));
            for (qsizetype i = 0; i < outputs.size(); ++i) {
                tell(registry, 0,
                     number(quint32(10 + i)) + text("wl_output") + number(outputs[i].version));
            }
        } else if (object == registry && request == 0) { // one of them is wanted
            const Output &output = outputs[qsizetype(numberAt(words, 0)) - 10];
            // No newer than it has it, nor than anybody has known when this was written.
            if (numberAt(words, words.size() - 8) == std::min(output.version, 4U))
                describe(numberAt(words, words.size() - 4), output);
        }
    }
    void describe(quint32 object, const Output &output) const
    {
        if (output.hasPlace)
            tell(object, 0,
                 number(0) + number(0) + number(300) + number(200) + number(0) + text("Maker") +
                     text("Model") + number(output.transform));
        for (const Mode &mode : output.modes)
            tell(object, 1,
                 number(mode.flags) + number(mode.width) + number(mode.height) + number(60000));
        if (!output.name.isEmpty())
            tell(object, 4, text(output.name));
        tell(object, 3, number(2)); // its scale
        tell(object, 2, {});        // and that is all
    }

    QList<Output> outputs;
    Patience patience;
    int listening = -1;
    int line = -1;
    quint32 registry = 0;
    std::thread thread;
};

} // namespace

extern "C" int poll(pollfd *all, nfds_t count, int ms)
{
    static const auto real =
        reinterpret_cast<int (*)(pollfd *, nfds_t, int)>(::dlsym(RTLD_NEXT, "poll"));
    if (readsSlowly)
        std::this_thread::sleep_for(20ms);
    return real(all, count, ms);
}

class TestWaylandOutputs : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir place;
    WaylandOutputs *module = nullptr;

    QList<WaylandOutput> asked(const QList<Output> &there, const Patience &patience = {})
    {
        const QByteArray path = QFile::encodeName(place.filePath(u"compositor"_s));
        const Compositor compositor(path, there, patience);
        qputenv("WAYLAND_DISPLAY", path);
        QList<WaylandOutput> all;
        if (compositor.isListening)
            all = module->outputs();
        QFile::remove(QFile::decodeName(path));
        return all;
    }

private slots:
    void initTestCase()
    {
        QVERIFY(place.isValid());
        QString problem;
        module = modules::load<WaylandOutputs>(&problem);
        QVERIFY2(module, qPrintable(problem));
    }

    void an_output_has_the_size_of_its_mode_of_now()
    {
        const auto all = asked({{"DP-1", 0, {{2, 2560, 1440}, {1, 1920, 1080}, {0, 640, 480}}},
                                {"HDMI-A-1", 0, {{3, 1366, 768}}}});
        QCOMPARE(all.size(), 2);
        QCOMPARE(all[0].name, u"DP-1"_s);
        QCOMPARE(all[0].size, QSize(1920, 1080));
        QCOMPARE(all[1].name, u"HDMI-A-1"_s);
        QCOMPARE(all[1].size, QSize(1366, 768));
    }

    void an_output_that_is_turned_by_a_quarter_is_upright_data()
    {
        QTest::addColumn<quint32>("transform");
        QTest::addColumn<QSize>("size");
        for (const quint32 transform : {0U, 2U, 4U, 6U})
            QTest::addRow("%u", transform) << transform << QSize(1920, 1080);
        for (const quint32 transform : {1U, 3U, 5U, 7U})
            QTest::addRow("%u", transform) << transform << QSize(1080, 1920);
    }
    void an_output_that_is_turned_by_a_quarter_is_upright()
    {
        QFETCH(const quint32, transform);
        const auto all = asked({{"DP-1", transform, {{1, 1920, 1080}}}});
        QCOMPARE(all.size(), 1);
        QTEST(all[0].size, "size");
    }

    void what_comes_in_pieces_is_put_together()
    {
        const auto all = asked({{"DP-1", 0, {{1, 1280, 800}}}}, {.inPieces = true});
        QCOMPARE(all.size(), 1);
        QCOMPARE(all[0].name, u"DP-1"_s);
        QCOMPARE(all[0].size, QSize(1280, 800));
    }

    void an_output_of_an_old_compositor_has_no_name()
    {
        const auto all = asked({{{}, 0, {{1, 1280, 800}}}});
        QCOMPARE(all.size(), 1);
        QCOMPARE(all[0].name, QString());
        QCOMPARE(all[0].size, QSize(1280, 800));
    }

    void an_output_of_a_newer_compositor_is_asked_for_as_it_is_known()
    {
        const auto all = asked({{"DP-1", 0, {{1, 1280, 800}}, 9}});
        QCOMPARE(all.size(), 1);
        QCOMPARE(all[0].name, u"DP-1"_s);
        QCOMPARE(all[0].size, QSize(1280, 800));
    }

    void an_output_without_a_place_is_not_turned()
    {
        const auto all = asked({{"DP-1", 1, {{1, 1280, 800}}, 4, false}, {"DP-2", 0, {}}});
        QCOMPARE(all.size(), 2);
        QCOMPARE(all[0].size, QSize(1280, 800));
        QVERIFY(all[1].size.isEmpty()); // of which nothing is known
    }

    void a_compositor_that_goes_away_has_no_outputs_data()
    {
        QTest::addColumn<int>("answers");
        QTest::newRow("before it tells of them") << 0;
        QTest::newRow("before it tells how they are") << 1;
    }
    void a_compositor_that_goes_away_has_no_outputs()
    {
        QFETCH(const int, answers);
        bool isEmpty = true;
        const auto ask = [&] {
            isEmpty = asked({{"DP-1", 0, {{1, 1280, 800}}}}, {answers, true}).isEmpty() && isEmpty;
        };
        QVERIFY(quickest(900ms, [&ask] { return took(ask); }) < 900ms);
        QVERIFY(isEmpty);
        QCOMPARE(asked({{"DP-1", 0, {{1, 1280, 800}}}}).size(), 1); // the next one
    }

    void a_compositor_that_does_not_answer_is_waited_for_a_second_data()
    {
        QTest::addColumn<bool>("chatters");
        QTest::newRow("it says nothing") << false;
        QTest::newRow("it says other things") << true;
    }
    void a_compositor_that_does_not_answer_is_waited_for_a_second()
    {
        QFETCH(const bool, chatters);
        QList<Output> there;
        if (chatters)
            there.append({"DP-1", 0, {{1, 1280, 800}}});
        const QScopedValueRollback slowly(readsSlowly, chatters);
        QElapsedTimer time;
        time.start();
        QVERIFY(asked(there, {.chatters = chatters}).isEmpty());
        QVERIFY2(time.elapsed() >= 950 && time.elapsed() < 5000,
                 QByteArray::number(time.elapsed()));
    }

    void outputs_of_which_nothing_more_is_told_are_none()
    {
        QVERIFY(asked({{"DP-1", 0, {{1, 1280, 800}}}}, {1, false}).isEmpty());
    }

    void without_a_compositor_there_are_no_outputs()
    {
        qputenv("WAYLAND_DISPLAY", QFile::encodeName(place.filePath(u"nobody"_s)));
        QVERIFY(module->outputs().isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestWaylandOutputs)
#include "tst_waylandoutputs.moc"
