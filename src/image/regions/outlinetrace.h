#pragma once

#include <algorithm>
#include <cstdlib>
#include <vector>

/// Follows the edge pixels of a region and collects a vertex wherever the direction changes:
/// `Thresholding0::extractCurve`, for any form of two-valued image.
namespace outlinetrace {

struct Position
{
    int row;
    int column;

    bool operator==(const Position& other) const
    {
        return row == other.row && column == other.column;
    }
};

inline Position operator+(const Position& a, const Position& b)
{
    return {a.row + b.row, a.column + b.column};
}

/// Where the trace stands and in which direction it searches: 0 up, 1 down, 2 right, 3 left. The
/// rest of a trace depends on nothing else.
struct TraceState
{
    Position position;
    int direction;

    bool operator==(const TraceState& other) const
    {
        return position == other.position && direction == other.direction;
    }
};

struct TraceTest
{
    Position step;
    int nextDirection;
};

/// For each direction the three pixels that are looked at, in order.
constexpr TraceTest traceTests[4][3] = {
    {{{-1, 1}, 2}, {{-1, 0}, 0}, {{-1, -1}, 0}},
    {{{1, -1}, 3}, {{1, 0}, 1}, {{1, 1}, 1}},
    {{{1, 1}, 1}, {{0, 1}, 2}, {{-1, 1}, 2}},
    {{{-1, -1}, 0}, {{0, -1}, 3}, {{1, -1}, 3}},
};

/// The group of tests that follows when a group finds nothing: 0, 3, 1, 2 and round again.
constexpr int followingDirection[4] = {3, 2, 0, 1};

/// The step to the next foreground pixel; no step if there is none.
template <class IsForeground>
TraceTest nextStep(const TraceState& state, IsForeground isForeground)
{
    int direction = state.direction;
    for (int group = 0; group < 3; ++group) {
        for (const TraceTest& test : traceTests[direction]) {
            if (isForeground(state.position + test.step)) {
                return test;
            }
        }
        direction = followingDirection[direction];
    }
    return {{0, 0}, 0};
}

inline int absoluteTwiceArea(const Position& a, const Position& b, const Position& c)
{
    const long long area = static_cast<long long>(b.row - a.row) * (c.column - a.column) -
                           static_cast<long long>(b.column - a.column) * (c.row - a.row);
    return static_cast<int>(std::min<long long>(std::llabs(area), 0x7fffffff));
}

/// Collects the vertices of a trace, with straight runs compressed.
class TraceVertices
{
public:
    TraceVertices(const Position& start, int tolerance)
        : start_(start)
        , tolerance_(tolerance)
        , vertices_{start}
    {}

    /// Takes the next position; false when the trace is back at its start.
    bool advance(const Position& step, const Position& position)
    {
        if (step == lastStep_) {
            return extendRun(position);
        }
        if (isNearlyStraight(step, position)) {
            vertices_.back() = position;
            lastStep_ = step;
            return !(position == start_);
        }
        if (position == start_) {
            return false;
        }
        vertices_.push_back(position);
        lastStep_ = step;
        return true;
    }

    const std::vector<Position>& vertices() const { return vertices_; }

private:
    bool extendRun(const Position& position)
    {
        if (position == start_) {
            vertices_.pop_back();
            return false;
        }
        vertices_.back() = position;
        return true;
    }

    bool isNearlyStraight(const Position& step, const Position& position) const
    {
        if (tolerance_ <= 0 || vertices_.size() < 2 ||
            (step.row != lastStep_.row && step.column != lastStep_.column)) {
            return false;
        }
        const Position& previous = vertices_[vertices_.size() - 2];
        return absoluteTwiceArea(previous, vertices_.back(), position) <= tolerance_;
    }

    Position start_;
    int tolerance_;
    Position lastStep_ = {100, 100};
    std::vector<Position> vertices_;
};

/// Notices that a trace has come round to a state again: it remembers one state, for twice as many
/// steps each time. Source: Brent, An improved Monte Carlo factorization algorithm, 1980, section 2.
class RoundTrip
{
public:
    explicit RoundTrip(const TraceState& start)
        : remembered_(start)
    {}

    bool closes(const TraceState& state)
    {
        if (state == remembered_) {
            return true;
        }
        if (++steps_ == limit_) {
            remembered_ = state;
            steps_ = 0;
            limit_ *= 2;
        }
        return false;
    }

private:
    TraceState remembered_;
    long long steps_ = 0;
    long long limit_ = 1;
};

/// The vertices of the trace from `start`, rows first. `isForeground` tells of any position, also
/// of one outside the image, whether it holds a foreground pixel.
template <class IsForeground>
std::vector<Position> follow(const Position& start, int tolerance, IsForeground isForeground)
{
    TraceState state = {start, 1};
    TraceVertices vertices(start, tolerance);
    RoundTrip roundTrip(state);
    bool goesOn = true;
    while (goesOn) {
        const TraceTest next = nextStep(state, isForeground);
        state = {state.position + next.step, next.nextDirection};
        goesOn = vertices.advance(next.step, state.position) && !roundTrip.closes(state);
    }
    return vertices.vertices();
}

} // namespace outlinetrace
