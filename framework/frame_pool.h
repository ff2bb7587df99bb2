// Full-frame memory reused from frame to frame.
//
// Every frame needs the same large blocks (the converted clips, the result,
// the canvas, the per-pixel maps). Taking them from the system and giving
// them back each frame costs a page fault and a zeroed page for every 4 KiB
// touched; the pool keeps the blocks of the current frame size instead. It
// lives inside the plug-in and never changes how the host process allocates.
//
// The entry points call frame_pool_size() at the start of each frame: a new
// frame size (or working resolution) releases what the old one kept, and
// frame_pool_release() gives everything back when the host uninitialises the
// plug-in. Blocks come back uninitialised, like malloc's.
#pragma once

#include <cstddef>

#include "framework/image.h"

// Declares the frame size the next blocks are for; frees the kept blocks
// when it differs from the last one.
void frame_pool_size(long width, long height, int reduction);
// A block of at least `bytes` bytes, reused when one of that size is kept.
void* frame_pool_take(std::size_t bytes);
// Returns a block taken from the pool (null is ignored).
void frame_pool_give(void* block);
// Frees every kept block.
void frame_pool_release();
// Blocks kept for reuse, and all blocks the pool has handed out and not yet
// freed (kept or in use), for the tests.
std::size_t frame_pool_kept();
std::size_t frame_pool_live();

// An image of w x h pixels over a pooled block, and its release (the block
// goes back to the pool, the image object is deleted; null is ignored).
ImageQ7* frame_pool_image(long width, long height);
void frame_pool_drop(ImageQ7* image);
