#include "framework/frame_pool.h"

#include <cstdio>
#include <cstdlib>
#include <vector>

namespace {

struct Block {
    void* memory;
    std::size_t bytes;
};

// The host calls the plug-in on one thread at a time, and blocks are taken
// and given back only on that thread, outside band runs: no lock is needed.
struct Pool {
    std::vector<Block> kept;
    std::vector<Block> in_use;
    long width = -1, height = -1;
    int reduction = -1;

    ~Pool() { free_kept(); }
    void free_kept() {
        for (const Block& b : kept) std::free(b.memory);
        kept.clear();
    }
};

Pool& pool() {
    static Pool p;
    return p;
}

}  // namespace

void frame_pool_size(long width, long height, int reduction) {
    Pool& p = pool();
    if (width == p.width && height == p.height && reduction == p.reduction) return;
    p.free_kept();
    p.width = width;
    p.height = height;
    p.reduction = reduction;
}

void* frame_pool_take(std::size_t bytes) {
    Pool& p = pool();
    if (bytes == 0) bytes = 1;
    for (std::size_t i = 0; i < p.kept.size(); ++i) {
        if (p.kept[i].bytes != bytes) continue;
        const Block b = p.kept[i];
        p.kept.erase(p.kept.begin() + static_cast<long>(i));
        p.in_use.push_back(b);
        return b.memory;
    }
    void* memory = std::malloc(bytes);
    if (!memory) {
        // As for an image: no exception may cross the host boundary and a
        // frame cannot run without its buffers.
        std::fprintf(stderr, "SPARK_MESSAGE::\tout of memory allocating a frame buffer of %zu bytes\n", bytes);
        std::abort();
    }
    p.in_use.push_back({memory, bytes});
    return memory;
}

void frame_pool_give(void* block) {
    if (!block) return;
    Pool& p = pool();
    for (std::size_t i = 0; i < p.in_use.size(); ++i) {
        if (p.in_use[i].memory != block) continue;
        p.kept.push_back(p.in_use[i]);
        p.in_use.erase(p.in_use.begin() + static_cast<long>(i));
        return;
    }
}

void frame_pool_release() {
    Pool& p = pool();
    p.free_kept();
    p.width = p.height = -1;
    p.reduction = -1;
}

std::size_t frame_pool_kept() { return pool().kept.size(); }
std::size_t frame_pool_live() { return pool().kept.size() + pool().in_use.size(); }

ImageQ7* frame_pool_image(long width, long height) {
    const std::size_t pixels = static_cast<std::size_t>(width > 0 ? width : 0) * (height > 0 ? height : 0);
    return new ImageQ7(width, height, 0.0f, static_cast<PixelQ7*>(frame_pool_take(pixels * sizeof(PixelQ7))));
}

void frame_pool_drop(ImageQ7* image) {
    if (!image) return;
    frame_pool_give(image->buffer);
    delete image;
}
