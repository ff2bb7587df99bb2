// The frame pool: blocks of the current frame size are kept and handed out
// again; a new frame size or the plug-in's uninitialisation frees them.
#include <gtest/gtest.h>

#include "framework/frame_pool.h"

namespace {

TEST(FramePool, KeepsBlocksOfTheFrameSizeAndFreesThemOnAChangeOrRelease) {
    frame_pool_release();
    frame_pool_size(720, 486, 1);
    void* a = frame_pool_take(1000);
    void* b = frame_pool_take(1000);
    void* c = frame_pool_take(64);
    EXPECT_NE(a, b);
    EXPECT_EQ(frame_pool_kept(), 0u);
    EXPECT_EQ(frame_pool_live(), 3u);
    frame_pool_give(a);
    frame_pool_give(c);
    frame_pool_give(nullptr);  // ignored
    EXPECT_EQ(frame_pool_kept(), 2u);

    // The next frame at the same size gets the same blocks back, by size.
    frame_pool_size(720, 486, 1);
    EXPECT_EQ(frame_pool_take(64), c);
    EXPECT_EQ(frame_pool_take(1000), a);
    EXPECT_EQ(frame_pool_live(), 3u);
    frame_pool_give(a);
    frame_pool_give(b);
    frame_pool_give(c);
    EXPECT_EQ(frame_pool_kept(), 3u);

    // Each change of width, height or working resolution frees what is kept.
    struct Step {
        long w, h;
        int s;
        std::size_t kept_after;
    };
    const Step steps[] = {{720, 486, 1, 3}, {720, 486, 2, 0}, {720, 243, 2, 0}, {1920, 1080, 2, 0}};
    for (const Step& st : steps) {
        frame_pool_size(st.w, st.h, st.s);
        EXPECT_EQ(frame_pool_kept(), st.kept_after) << st.w << "x" << st.h << " /" << st.s;
        frame_pool_give(frame_pool_take(500));  // one block kept for the next step
    }
    EXPECT_EQ(frame_pool_kept(), 1u);
    frame_pool_release();
    EXPECT_EQ(frame_pool_kept(), 0u);
    EXPECT_EQ(frame_pool_live(), 0u);

    // An image over a pooled block gives the block back when dropped.
    frame_pool_size(8, 4, 1);
    ImageQ7* image = frame_pool_image(8, 4);
    EXPECT_EQ(image->owns_buffer, 0);
    EXPECT_EQ(image->rows[3], image->buffer + 24);
    PixelQ7* block = image->buffer;
    frame_pool_drop(image);
    EXPECT_EQ(frame_pool_kept(), 1u);
    image = frame_pool_image(8, 4);
    EXPECT_EQ(image->buffer, block);
    frame_pool_drop(image);
    frame_pool_release();
}

}  // namespace
