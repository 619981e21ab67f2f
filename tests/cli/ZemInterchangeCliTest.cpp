// zem with the files of other tools: compressed input and standard MPS output.
#include <cstdlib>

#include "cli/ZemCliTestSupport.h"
#include "mpsutil/MPSTestUtil.h"

using namespace clitest;

namespace {

class ZemInterchange : public ZemRun {
protected:
    // `path` compressed with gzip into the scratch folder as `name`.
    std::string Gzip(const std::string& path, const std::string& name) {
        const std::string out = dir_ + "/" + name;
        if (std::system(("gzip -c '" + path + "' > '" + out + "'").c_str()) != 0) return "";
        return out;
    }
};

TEST_F(ZemInterchange, CompressedInputReadsAsThePlainFileOrFailsNamingIt) {
    const std::string tmp = dir_ + "/tmp";
    std::filesystem::create_directory(tmp);
    setenv("TMPDIR", tmp.c_str(), 1);
    const std::string blend = Gzip(Blend(), "blend.mps.gz");
    const std::string refinery = Gzip(Refinery(), "refinery.XMPS.GZ");
    if (blend.empty() || refinery.empty()) GTEST_SKIP() << "gzip not found";
    EXPECT_EQ(Run("dump '" + blend + "'").out, Run("dump '" + Blend() + "'").out);
    EXPECT_EQ(Run("dump '" + refinery + "'").out, Run("dump '" + Refinery() + "'").out);

    const std::string whole = Slurp(blend);
    std::string flipped = whole;
    flipped[whole.size() / 2] = static_cast<char>(flipped[whole.size() / 2] ^ 0x5a);
    const struct {
        const char* name;
        std::string content;
        const char* why;
    } bad[] = {{"cut.mps.gz", whole.substr(0, whole.size() - 12), "truncated or corrupt"},
               {"flip.mps.gz", flipped, "truncated or corrupt"},
               {"plain.mps.gz", Slurp(Blend()), "not gzip-compressed data"}};
    for (const auto& b : bad) {
        const Result r = Run("info '" + File(b.name, b.content) + "'");
        EXPECT_EQ(r.status, 1) << b.name;
        EXPECT_EQ(r.out, "") << b.name;
        ExpectAll(r.err, {b.name, b.why});
    }
    // Every inflated copy is gone, failed or not.
    EXPECT_TRUE(std::filesystem::is_empty(tmp));
    unsetenv("TMPDIR");
}

TEST_F(ZemInterchange, StandardMpsOutputRefusesNonlinearModelsAndTakesFree) {
    const std::string out = dir_ + "/out.mps";
    const Result nonlinear = Run("convert '" + Refinery() + "' '" + out + "'");
    EXPECT_EQ(nonlinear.status, 1);
    ExpectAll(nonlinear.err, {"MPS Write Refused", "12 nonlinear terms; the first is"});
    EXPECT_FALSE(std::filesystem::exists(out));

    using mpstest::Card;
    const std::string in = File("small.mps", "NAME          SMALL\nROWS\n N  COST\n L  LIM\nCOLUMNS\n" +
                                                 Card("", "X", "COST", "1", "LIM", "1") + "\nRHS\n" +
                                                 Card("", "RHS", "LIM", "4") + "\nENDATA\n");
    ASSERT_EQ(Run("convert '" + in + "' '" + out + "' --free").status, 0);
    EXPECT_NE(Slurp(out).find("\n X COST 1 LIM 1\n"), std::string::npos) << Slurp(out);
    EXPECT_EQ(Run("convert '" + in + "' '" + dir_ + "/out.xmps' --free").status, 2);
}

}  // namespace
