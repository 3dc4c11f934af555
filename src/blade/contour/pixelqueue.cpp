#include "blade/contour/pixelqueue.h"

PixelQueue::Chunk* PixelQueue::Store::take()
{
    if (free_) {
        Chunk* chunk = free_;
        free_ = chunk->next;
        return chunk;
    }
    // Not `make_unique`, which would clear the chunk first.
    chunks_.emplace_back(new Chunk);
    return chunks_.back().get();
}

void PixelQueue::grow(Store& store)
{
    Chunk* chunk = store.take();
    chunk->next = nullptr;
    if (tail_) {
        tail_->next = chunk;
    } else {
        head_ = chunk;
        read_ = 0;
    }
    tail_ = chunk;
    written_ = 0;
}
