// A render farm splits a shot into chunks: a chunk that starts later in the
// shot first simulates the frames before it, and must then write the same
// files as one render of the whole shot. The thread count never changes a frame.
#include <gtest/gtest.h>

#include "tests/tool_support.h"

using namespace tool_support;

namespace {

// An animated look: with Blend 100 every frame would be the front alone.
const std::vector<std::string> kLook = {"--size", "96x64", "--preset", "explosion", "--quality", "high", "-q"};

ToolRun render(const TempDir& dir, std::vector<std::string> args) {
    args.insert(args.end(), kLook.begin(), kLook.end());
    return dir.render(args);
}

void expect_same_files(const TempDir& dir, const std::string& a, const std::string& b, std::size_t n) {
    ASSERT_EQ(dir.files(a), dir.files(b));
    ASSERT_EQ(dir.files(a).size(), n);
    for (const std::string& name : dir.files(a))
        EXPECT_EQ(file_bytes(dir.path(a + "/" + name)), file_bytes(dir.path(b + "/" + name))) << name;
}

}  // namespace

TEST(ToolChunks, ChunkFilesAreByteIdenticalToTheFullRender) {
    TempDir dir;
    ASSERT_EQ(render(dir, {"--frames", "1-8", "--out", "full/f.%04d.png"}).status, 0);
    ASSERT_EQ(render(dir, {"--frames", "1-3", "--shot-start", "1", "--out", "chunks/f.%04d.png"}).status, 0);
    ASSERT_EQ(render(dir, {"--frames", "4-8", "--shot-start", "1", "--out", "chunks/f.%04d.png"}).status, 0);
    expect_same_files(dir, "full", "chunks", 8);
}

TEST(ToolChunks, ThreadCountDoesNotChangeTheFrames) {
    TempDir dir;
    ASSERT_EQ(render(dir, {"--frames", "1-3", "--threads", "1", "--out", "one/f.%d.png"}).status, 0);
    ASSERT_EQ(render(dir, {"--frames", "1-3", "--threads", "3", "--out", "three/f.%d.png"}).status, 0);
    expect_same_files(dir, "one", "three", 3);
}
