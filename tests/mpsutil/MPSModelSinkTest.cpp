#include "mpsutil/MPSModelSink.h"

#include <string>

#include "MPSTestUtil.h"

using namespace mpstest;

// The remembered row and column are used only for exactly their names, and
// a row made by the sink comes back with its index.
TEST(MPSModelSink, RecentRowsAndColumnsMatchOnlyTheirOwnNames) {
    ModelPtr m = NewModel();
    MPSModelSink sink;
    ASSERT_TRUE(sink.Attach(m.get()));
    int index = -1;
    ILPEquation* r1 = sink.FindOrCreateEquation("ROW1", 4, index);
    ASSERT_NE(r1, nullptr);
    EXPECT_EQ(index, r1->GetIndex());
    ILPEquation* r10 = sink.FindOrCreateEquation("ROW10", 5, index);
    EXPECT_NE(r10, r1);
    EXPECT_EQ(sink.FindOrCreateEquation("ROW1", 4, index), r1);
    EXPECT_EQ(index, r1->GetIndex());
    ILPVariable* x = sink.FindOrCreateVariable("X", 1);
    EXPECT_TRUE(sink.IsLastVariable("X", 1));
    EXPECT_FALSE(sink.IsLastVariable("XY", 2));
    EXPECT_NE(sink.FindOrCreateVariable("XY", 2), x);
    sink.Forget();
    EXPECT_FALSE(sink.IsLastVariable("XY", 2));
    // A name longer than the cache holds is looked up every time.
    const std::string longName(kRecentNameMax + 1, 'L');
    ILPVariable* longVar = sink.FindOrCreateVariable(longName.c_str(), longName.size());
    EXPECT_FALSE(sink.IsLastVariable(longName.c_str(), longName.size()));
    EXPECT_EQ(sink.FindOrCreateVariable(longName.c_str(), longName.size()), longVar);
}
