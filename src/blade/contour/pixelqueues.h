#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

/// First-in, first-out queues of pixels, named by their places. All take their memory from one store
/// of chunks of 4 KiB: what one queue has served the next one uses, so that all of them together
/// take four bytes a waiting pixel.
///
/// A queue is known by two addresses, of the next place to read and the next to write. Chunks begin
/// at multiples of their size, so that an address tells by itself whether its chunk is full.
class PixelQueues
{
public:
    explicit PixelQueues(int count);

    bool isEmpty(int queue) const { return ends(queue).head == ends(queue).tail; }

    void push(int queue, int place)
    {
        int*& tail = ends(queue).tail;
        if (isAtEnd(tail)) {
            grow(queue);
        }
        *tail++ = place;
    }

    /// Only for a queue that is not empty.
    int pop(int queue);

    /// Serves a queue from first to last, those included that arrive meanwhile. `serve(place)` works
    /// on a pixel, `expect(place)` is told beforehand of most.
    template <class Serve, class Expect>
    void drain(int queue, Serve serve, Expect expect)
    {
        while (!isEmpty(queue)) {
            const int* place = readable(queue);
            const int* const end = readableEnd(queue);
            for (; end - place > lookAhead; ++place) {
                expect(place[lookAhead]);
                serve(*place);
            }
            for (; place != end; ++place) {
                serve(*place);
            }
            ends(queue).head = const_cast<int*>(end);
        }
        release(queue);
    }

private:
    static constexpr std::size_t chunkBytes = 4096;
    static constexpr int capacity = 1022;
    static constexpr int lookAhead = 12;

    struct alignas(chunkBytes) Chunk
    {
        int places[capacity];
        Chunk* next;
    };

    struct Ends
    {
        int* head;
        int* tail;
    };

    static bool isAtEnd(const int* place)
    {
        return reinterpret_cast<std::uintptr_t>(place) % chunkBytes == capacity * sizeof(int);
    }

    static Chunk* chunkOf(int* place)
    {
        return reinterpret_cast<Chunk*>(reinterpret_cast<std::uintptr_t>(place) / chunkBytes *
                                        chunkBytes);
    }

    Ends& ends(int queue) { return ends_[static_cast<std::size_t>(queue)]; }

    const Ends& ends(int queue) const { return ends_[static_cast<std::size_t>(queue)]; }

    Chunk* take();
    void giveBack(Chunk* chunk);
    void grow(int queue);
    int* readable(int queue);
    const int* readableEnd(int queue) const;
    void release(int queue);

    std::vector<std::unique_ptr<Chunk>> chunks_;
    Chunk* free_ = nullptr;
    // Never written: its end is that of every queue without a chunk.
    std::unique_ptr<Chunk> none_;
    std::vector<Ends> ends_;
};
