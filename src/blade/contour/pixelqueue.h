#pragma once

#include <memory>
#include <vector>

/// First-in, first-out queue of pixels, named by their places. Queues of one flooding share a store
/// of chunks: what one queue has served the next one uses, so that all of them together take four
/// bytes a waiting pixel.
class PixelQueue
{
public:
    struct Chunk
    {
        static constexpr int capacity = 1022;
        int places[capacity];
        Chunk* next;
    };

    class Store
    {
    public:
        Chunk* take();

        void giveBack(Chunk* chunk)
        {
            chunk->next = free_;
            free_ = chunk;
        }

    private:
        std::vector<std::unique_ptr<Chunk>> chunks_;
        Chunk* free_ = nullptr;
    };

    bool isEmpty() const { return head_ == tail_ && read_ == written_; }

    void push(int place, Store& store)
    {
        if (!tail_ || written_ == Chunk::capacity) {
            grow(store);
        }
        tail_->places[written_++] = place;
    }

    /// Only for a queue that is not empty.
    int pop(Store& store)
    {
        if (read_ == Chunk::capacity) {
            Chunk* served = head_;
            head_ = head_->next;
            read_ = 0;
            store.giveBack(served);
        }
        const int place = head_->places[read_++];
        if (isEmpty()) {
            read_ = written_ = 0;
        }
        return place;
    }

private:
    void grow(Store& store);

    Chunk* head_ = nullptr;
    Chunk* tail_ = nullptr;
    int read_ = 0;
    int written_ = 0;
};
