// SPDX-License-Identifier: GPL-3.0-or-later

#include "evaluation.h"
#include "othermaker.h"

#include <QTest>

using evaluation::Tally;

namespace {

// A tenth of what scripts/evaluate-lights judges: sanitizers are slow.
constexpr int Frames = 200;

} // namespace

// The bars that the verdicts have to clear, on frames of which everything is known.
class TestEvaluation : public QObject
{
    Q_OBJECT

private slots:
    void frames_are_judged_within_the_bars()
    {
        const maker::Recipe recipe;
        const Tally tally = evaluation::evaluate(recipe, Frames, evaluation::MainSeed, false);
        using lights::LightVerdict;
        for (const LightVerdict kind : {LightVerdict::Dead, LightVerdict::SwitchedOff})
            QCOMPARE(tally.lightsFound(int(kind)), 1.0);
        for (const LightVerdict kind :
             {LightVerdict::Weak, LightVerdict::Noisy, LightVerdict::Saturated}) {
            QVERIFY2(tally.lightsFound(int(kind)) >= 0.99, evaluation::LightWords[int(kind)]);
            QVERIFY2(tally.falseLights(int(kind)) <= 1e-4, evaluation::LightWords[int(kind)]);
        }
        for (int kind = 0; kind < evaluation::Stretches; ++kind) {
            QVERIFY2(tally.stretchesFound(kind) >= 0.95, evaluation::StretchWords[kind]);
            long some = 0;
            for (const long judged : tally.stretches[kind])
                some += judged;
            QVERIFY2(some > 80, evaluation::StretchWords[kind]);
        }
        QVERIFY(tally.falseStretches() <= 1.0 / 200);
        QVERIFY(evaluation::holds(tally));
    }

    void so_are_frames_of_other_rules()
    {
        const Tally tally =
            evaluation::evaluate(maker::makeOther, Frames, evaluation::MainSeed, false);
        QVERIFY(evaluation::holds(tally));
        for (int kind = 0; kind < evaluation::Stretches; ++kind) {
            long some = 0;
            for (const long judged : tally.stretches[kind])
                some += judged;
            QVERIFY2(some > 80, evaluation::StretchWords[kind]);
        }
    }

    void frames_without_a_fault_have_none()
    {
        maker::Recipe recipe;
        recipe.maxFaults = 0;
        recipe.bars = false;
        const Tally tally = evaluation::evaluate(recipe, Frames, 5001, false);
        QCOMPARE(tally.lightsFound(0), 1.0);
        QCOMPARE(tally.falseStretches(), 0.0);
    }

    // Otherwise the test above could not fail.
    void the_bars_do_not_hold_where_faults_are_missed()
    {
        Tally tally;
        tally.frames = 200;
        for (int kind = 0; kind < evaluation::Kinds; ++kind)
            tally.lights[kind][kind] = 1000;
        for (int kind = 0; kind < evaluation::Stretches; ++kind)
            tally.stretches[kind][kind] = 100;
        QVERIFY(evaluation::holds(tally));
        Tally worse = tally;
        worse.lights[int(lights::LightVerdict::Dead)][0] = 1;
        QVERIFY(!evaluation::holds(worse));
        worse = tally;
        worse.lights[0][int(lights::LightVerdict::Weak)] = 1;
        QVERIFY(!evaluation::holds(worse));
        worse = tally;
        worse.stretches[0][1] = 6;
        QVERIFY(!evaluation::holds(worse));
        worse = tally;
        worse.stretches[evaluation::Stretches][2] = 2;
        QVERIFY(!evaluation::holds(worse));
    }
};

QTEST_GUILESS_MAIN(TestEvaluation)
#include "tst_evaluation.moc"
