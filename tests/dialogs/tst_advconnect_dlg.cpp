// SPDX-License-Identifier: GPL-3.0-or-later

#include "dialogs/advconnect_dlg.h"
#include "tests/support/clipped.h"
#include "tests/support/settingshome.h"
#include "tests/support/widgets.h"

#include <QComboBox>
#include <QDirIterator>
#include <QMetaMethod>
#include <QTest>

using namespace Qt::StringLiterals;

static_assert(std::is_default_constructible_v<advconnect_dlg>);

class TestAdvConnectDlg : public QObject
{
    Q_OBJECT

private:
    static QStringList items(const QComboBox *box)
    {
        QStringList texts;
        for (int i = 0; i < box->count(); ++i)
            texts.append(box->itemText(i));
        return texts;
    }

private slots:
    void the_form_is_as_drawn()
    {
        const advconnect_dlg dialog(nullptr);
        QCOMPARE(dialog.objectName(), u"advconnect_dlg"_s);
        QCOMPARE(dialog.windowTitle(), u"Advance Connect Setting"_s);
        QCOMPARE(dialog.size(), QSize(400, 300));
        QCOMPARE(dialog.font().family(), u"Tahoma"_s);
        QCOMPARE(in<QGroupBox>(&dialog, "gbTuio")->title(), u"TUIO"_s);
        QCOMPARE(in<QLabel>(&dialog, "label_2")->text(), u"Socket:"_s);
        QCOMPARE(items(in<QComboBox>(&dialog, "Tuio_Protocol_cBox")),
                 QStringList({u"UDP"_s, u"TCP"_s}));
        QCOMPARE(in<QLabel>(&dialog, "label")->text(), u"TUIO Version:"_s);
        QCOMPARE(items(in<QComboBox>(&dialog, "Tuio_version_cBox")),
                 QStringList({u"TUIO 2.0"_s, u"TUIO 1.1"_s}));
        const auto *uart = in<QGroupBox>(&dialog, "groupBox");
        QCOMPARE(uart->title(), u"UART"_s);
        QVERIFY(uart->findChildren<QWidget *>().isEmpty());
        QCOMPARE(in(&dialog, "btnOK")->text(), u"&OK"_s);
        QCOMPARE(in(&dialog, "btnCancel")->text(), u"&Cancel"_s);
    }

    void nothing_is_clipped()
    {
        advconnect_dlg dialog(nullptr);
        dialog.show();
        QVERIFY(QTest::qWaitForWindowExposed(&dialog));
        QCOMPARE(clipped(dialog), QStringList());
    }

    void no_other_part_of_the_program_uses_it_so_a_build_without_it_behaves_the_same()
    {
        const QDir project(QStringLiteral(QT_TESTCASE_SOURCEDIR "/../.."));
        QStringList users;
        int searched = 0;
        for (const char *folder : {"app", "dialogs", "config", "device", "sim", "tools"}) {
            QDirIterator files(project.filePath(QLatin1StringView(folder)),
                               {u"*.cpp"_s, u"*.h"_s, u"*.ui"_s}, QDir::Files);
            while (files.hasNext()) {
                QFile file(files.next());
                QVERIFY(file.open(QIODevice::ReadOnly));
                ++searched;
                if (file.readAll().contains("advconnect_dlg"))
                    users.append(QFileInfo(file).fileName());
            }
        }
        QVERIFY(searched > 50);
        users.sort();
        QCOMPARE(users, QStringList({u"advconnect_dlg.cpp"_s, u"advconnect_dlg.h"_s,
                                     u"advconnect_dlg.ui"_s}));
    }

    void it_neither_offers_nor_does_anything()
    {
        const QMetaObject &meta = advconnect_dlg::staticMetaObject;
        QCOMPARE(meta.methodCount(), meta.methodOffset());

        const SettingsHome home;
        advconnect_dlg dialog(nullptr);
        dialog.show();
        QVERIFY(QTest::qWaitForWindowExposed(&dialog));
        in<QComboBox>(&dialog, "Tuio_Protocol_cBox")->setCurrentIndex(1);
        for (const char *name : {"btnOK", "btnCancel"}) {
            press(&dialog, name);
            QVERIFY(dialog.isVisible());
        }
        dialog.close();
        QVERIFY(!QFile::exists(home.path()));
    }
};

QTEST_MAIN(TestAdvConnectDlg)
#include "tst_advconnect_dlg.moc"
