// A render farm splits a shot into chunks: a chunk that starts later in the
// shot first simulates the frames before it, and must then write the same
// files as one render of the whole shot.
#include <gtest/gtest.h>

#include "tests/tool_support.h"

using namespace tool_support;

namespace {

void render_shot_and_chunks(const std::vector<std::string>& look) {
    TempDir dir;
    auto args = [&](std::vector<std::string> a) {
        a.insert(a.end(), look.begin(), look.end());
        a.push_back("-q");
        return a;
    };
    ToolRun r = dir.render(args({"--size", "96x64", "--frames", "1-8", "--out", "full/f.%04d.png"}));
    ASSERT_EQ(r.status, 0) << r.err;
    r = dir.render(args({"--size", "96x64", "--frames", "1-3", "--shot-start", "1", "--out", "chunks/f.%04d.png"}));
    ASSERT_EQ(r.status, 0) << r.err;
    r = dir.render(args({"--size", "96x64", "--frames", "4-8", "--shot-start", "1", "--out", "chunks/f.%04d.png"}));
    ASSERT_EQ(r.status, 0) << r.err;
    ASSERT_EQ(dir.files("full"), dir.files("chunks"));
    ASSERT_EQ(dir.files("full").size(), 8u);
    for (const std::string& name : dir.files("full"))
        EXPECT_EQ(file_bytes(dir.path("full/" + name)), file_bytes(dir.path("chunks/" + name))) << name;
}

}  // namespace

TEST(ToolChunks, ChunkFilesAreByteIdenticalToTheFullRender) {
    render_shot_and_chunks({"--blend", "100"});
}

TEST(ToolChunks, ChunkOfAnAnimatedEffectIsByteIdentical) {
    if (!plugin_has_control(19) || !plugin_has_control(30))
        GTEST_SKIP() << "the plug-in does not have the Demos (19) and Render Quality (30) controls yet";
    render_shot_and_chunks({"--preset", "explosion", "--quality", "high"});
}

TEST(ToolChunks, ThreadCountDoesNotChangeTheFrames) {
    TempDir dir;
    std::vector<std::string> look = {"--size", "96x64", "--frames", "1-3", "-q"};
    if (plugin_has_control(19)) {
        look.insert(look.end(), {"--preset", "explosion"});
    } else {
        look.insert(look.end(), {"--blend", "100"});
    }
    auto with = [&](std::vector<std::string> extra) {
        extra.insert(extra.end(), look.begin(), look.end());
        return extra;
    };
    ASSERT_EQ(dir.render(with({"--threads", "1", "--out", "one/f.%d.png"})).status, 0);
    ASSERT_EQ(dir.render(with({"--threads", "3", "--out", "three/f.%d.png"})).status, 0);
    for (const std::string& name : dir.files("one"))
        EXPECT_EQ(file_bytes(dir.path("one/" + name)), file_bytes(dir.path("three/" + name))) << name;
}
