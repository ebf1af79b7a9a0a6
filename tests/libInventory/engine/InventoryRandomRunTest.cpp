/// Random small scripts on random small machines: the engine against the plain rules, in everything that a host can
/// see.

#include <gtest/gtest.h>

#include "tests/libInventory/support/PlainRun.h"
#include "tests/libInventory/support/RandomWorld.h"

namespace vrx::test::plain {
namespace {

TEST(RandomRunTest, theEngineSaysWhatThePlainRulesSay) {
    int passed = 0;
    int withExtra = 0;
    int withParts = 0;
    for (unsigned seed = 0; seed < 1500; ++seed) {
        RandomWorld world(seed);
        const Element script = world.script();
        const bool withPartsTable = seed % 3 != 0;
        const Outcome expected = runPlainly(script, world.machine(), withPartsTable);
        Engine engine(world.machine(), withPartsTable);
        engine.load(script);
        ASSERT_EQ(engine.run(), expected) << "seed " << seed << "\n" << script.toXml();
        passed += expected.passed ? 1 : 0;
        withExtra += expected.extra.empty() ? 0 : 1;
        withParts += expected.parts.empty() ? 0 : 1;
    }
    EXPECT_GT(passed, 200);
    EXPECT_GT(withExtra, 300);
    EXPECT_GT(withParts, 50);
}

TEST(RandomRunTest, debugLinesAndEarlierRunsChangeNothing) {
    for (unsigned seed = 0; seed < 150; ++seed) {
        RandomWorld world(seed);
        const Element script = world.script();
        Engine quiet(world.machine(), true);
        Engine logged(world.machine(), true);
        Engine mixed(world.machine(), true);
        for (Engine* const engine : {&quiet, &logged, &mixed}) {
            engine->load(script);
        }
        const std::string what = "seed " + std::to_string(seed) + "\n" + script.toXml();
        const Outcome first = quiet.run();
        ASSERT_EQ(logged.runWithDebugLines(), first) << what;
        ASSERT_EQ(mixed.run(), first) << what;
        const Outcome second = quiet.run();
        ASSERT_EQ(logged.runWithDebugLines(), second) << what;
        ASSERT_EQ(mixed.runWithDebugLines(), second) << what;
        quiet.load(script);
        ASSERT_EQ(quiet.run(), first) << what;
    }
}

}  // namespace
}  // namespace vrx::test::plain
