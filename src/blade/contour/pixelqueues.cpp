#include "blade/contour/pixelqueues.h"

// Chunks by `new`, not `make_unique`, which would clear them first.
PixelQueues::PixelQueues(int count)
    : none_(new Chunk)
    , ends_(static_cast<std::size_t>(count), {none_->places + capacity, none_->places + capacity})
{}

PixelQueues::Chunk* PixelQueues::take()
{
    if (free_) {
        Chunk* chunk = free_;
        free_ = chunk->next;
        return chunk;
    }
    chunks_.emplace_back(new Chunk);
    return chunks_.back().get();
}

void PixelQueues::giveBack(Chunk* chunk)
{
    chunk->next = free_;
    free_ = chunk;
}

void PixelQueues::grow(int queue)
{
    Chunk* chunk = take();
    Chunk* last = chunkOf(ends(queue).tail);
    if (last == none_.get()) {
        ends(queue).head = chunk->places;
    } else {
        last->next = chunk;
    }
    ends(queue).tail = chunk->places;
}

/// The next place to read, in the next chunk if that of the head has been read.
int* PixelQueues::readable(int queue)
{
    int*& head = ends(queue).head;
    if (isAtEnd(head)) {
        Chunk* served = chunkOf(head);
        head = served->next->places;
        giveBack(served);
    }
    return head;
}

/// The end of what can be read on from the head without a change of chunk.
const int* PixelQueues::readableEnd(int queue) const
{
    const Ends& both = ends(queue);
    Chunk* chunk = chunkOf(both.head);
    return chunk == chunkOf(both.tail) ? both.tail : chunk->places + capacity;
}

void PixelQueues::release(int queue)
{
    Chunk* chunk = chunkOf(ends(queue).head);
    if (chunk != none_.get()) {
        giveBack(chunk);
        ends(queue) = {none_->places + capacity, none_->places + capacity};
    }
}

int PixelQueues::pop(int queue)
{
    const int place = *readable(queue);
    ++ends(queue).head;
    if (isEmpty(queue)) {
        release(queue);
    }
    return place;
}
