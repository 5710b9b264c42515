// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/heap.h"

#include <QTest>

#include <malloc.h>

#include <cstdio>
#include <cstdlib>
#include <latch>
#include <thread>
#include <vector>

namespace {

// As the C library counts them.
qsizetype heaps()
{
    char *text = nullptr;
    size_t size = 0;
    std::FILE *out = ::open_memstream(&text, &size);
    ::malloc_info(0, out);
    std::fclose(out);
    const qsizetype count = QByteArray(text, qsizetype(size)).count("<heap nr=");
    std::free(text);
    return count;
}

} // namespace

class TestHeap : public QObject
{
    Q_OBJECT

private slots:
    void threads_have_no_heaps_of_their_own()
    {
        constexpr int Threads = 4;
        std::latch all(Threads);
        std::vector<std::thread> threads;
        for (int i = 0; i < Threads; ++i)
            threads.emplace_back([&all] {
                const QByteArray block(1000, 'x');
                all.arrive_and_wait(); // until each has one
            });
        for (std::thread &thread : threads)
            thread.join();
        QCOMPARE(heaps(), 1);
    }

    void a_picture_goes_back_to_the_system_each_time()
    {
        constexpr int Picture = 2 * 1024 * 1024;
        const size_t before = ::mallinfo2().hblks;
        for (int i = 0; i < 3; ++i) {
            auto *picture = new QByteArray(Picture, 'x');
            QCOMPARE(::mallinfo2().hblks, before + 1);
            delete picture;
            QCOMPARE(::mallinfo2().hblks, before);
        }
    }
};

int main(int argc, char **argv)
{
    settleHeap();
    TestHeap test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_heap.moc"
