#include "image/regions/thresholding0.h"

#include "numerics/elementtype.h"
#include "shape/curves/curve.h"

#include <algorithm>
#include <cstdlib>
#include <utility>
#include <vector>

namespace {

struct Position
{
    int row;
    int column;

    bool operator==(const Position& other) const
    {
        return row == other.row && column == other.column;
    }
};

Position operator+(const Position& a, const Position& b)
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

int absoluteTwiceArea(const Position& a, const Position& b, const Position& c)
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

template <class T>
Curve<T> closedCurve(const std::vector<Position>& positions)
{
    const int size = static_cast<int>(positions.size());
    Curve<T> curve(2, size, size, 0, false);
    for (int i = 0; i < size; ++i) {
        const Position& position = positions[static_cast<std::size_t>(i)];
        curve[i][0] = static_cast<T>(position.row);
        curve[i][1] = static_cast<T>(position.column);
    }
    return curve;
}

/// Clears the inner pixels of `row`, given copies of the row `above` and of this one as they were, and the
/// row `below`. `inner` is scratch.
template <class T>
void clearInnerPixels(T* row,
                      const std::vector<T>& above,
                      const std::vector<T>& current,
                      const T* below,
                      std::vector<unsigned char>& inner,
                      T foreground,
                      T background)
{
    const std::size_t columns = current.size();
    for (std::size_t j = 0; j < columns; ++j) {
        inner[j] = static_cast<unsigned char>(
            (above[j] == foreground) & (current[j] == foreground) & (below[j] == foreground));
    }
    for (std::size_t j = 1; j + 1 < columns; ++j) {
        const int isInner = inner[j - 1] & inner[j] & inner[j + 1];
        row[j] = isInner != 0 ? background : row[j];
    }
}

} // namespace

template <class T>
Thresholding0<T>::Thresholding0()
    : threshold(0)
    , foreground(static_cast<T>(255))
    , background(0)
{}

template <class T>
Thresholding0<T>::~Thresholding0() = default;

template <class T>
void Thresholding0<T>::thresholdRow(T* row, int columns) const
{
    const T above = foregroundAbove ? foreground : background;
    const T below = foregroundAbove ? background : foreground;
    const T limit = threshold;
    for (int j = 0; j < columns; ++j) {
        row[j] = row[j] < limit ? below : above;
    }
}

template <class T>
void Thresholding0<T>::apply(PixelMatrix<T>& matrix)
{
    const int rows = matrix.getSize1();
    this->notifyStarted("");
    for (int i = 0; i < rows; ++i) {
        thresholdRow(matrix[i].data(), matrix.getSize2());
        this->notifyProgressed(i + 1, rows);
    }
    this->notifyFinished("");
}

template <class T>
void Thresholding0<T>::apply(VoxelMatrix<T>& matrix)
{
    const int planes = matrix.getSize3();
    this->notifyStarted("");
    for (int k = 0; k < planes; ++k) {
        for (int i = 0; i < matrix.getSize1(); ++i) {
            thresholdRow(matrix[k][i].data(), matrix.getSize2());
        }
        this->notifyProgressed(k + 1, planes);
    }
    this->notifyFinished("");
}

template <class T>
void Thresholding0<T>::levelSetMask(PixelMatrix<T>& matrix, T level) const
{
    for (int i = 0; i < matrix.getSize1(); ++i) {
        T* row = matrix[i].data();
        for (int j = 0; j < matrix.getSize2(); ++j) {
            row[j] = row[j] == level ? foreground : background;
        }
    }
}

template <class T>
void Thresholding0<T>::levelSetMask(VoxelMatrix<T>& matrix, T level) const
{
    for (int k = 0; k < matrix.getSize3(); ++k) {
        levelSetMask(matrix[k], level);
    }
}

template <class T>
void Thresholding0<T>::contours(PixelMatrix<T>& matrix) const
{
    const int rows = matrix.getSize1();
    const int columns = matrix.getSize2();
    if (rows < 3 || columns < 3) {
        return;
    }
    const auto copyRow = [&](int i) {
        return std::vector<T>(matrix[i].data(), matrix[i].data() + columns);
    };
    std::vector<T> above = copyRow(0);
    std::vector<T> current = copyRow(1);
    std::vector<unsigned char> inner(static_cast<std::size_t>(columns));
    for (int i = 1; i + 1 < rows; ++i) {
        T* row = matrix[i].data();
        std::copy_n(row, columns, current.begin());
        clearInnerPixels(row, above, current, matrix[i + 1].data(), inner, foreground, background);
        std::swap(above, current);
    }
}

template <class T>
void Thresholding0<T>::extractCurve([[maybe_unused]] Curve<T>& curve,
                                    [[maybe_unused]] int row,
                                    [[maybe_unused]] int column,
                                    [[maybe_unused]] const PixelMatrix<T>& image,
                                    [[maybe_unused]] int tolerance) const
{
    const char* const where = "void Thresholding<T>::extractCurve(...) const";
    if constexpr (!isOneOf<T, int, float, double, long double>) {
        raiseNotAvailable<T>(where);
    } else {
        if (!image.contains(row, column)) {
            raise<ValueError>(where, "The start lies outside the image");
        }
        const auto isForeground = [&](const Position& p) {
            return image.contains(p.row, p.column) && image(p.row, p.column) == foreground;
        };
        const Position start = {row, column};
        TraceState state = {start, 1};
        TraceVertices vertices(start, tolerance);
        RoundTrip roundTrip(state);
        bool goesOn = true;
        while (goesOn) {
            const TraceTest next = nextStep(state, isForeground);
            state = {state.position + next.step, next.nextDirection};
            goesOn = vertices.advance(next.step, state.position) && !roundTrip.closes(state);
        }
        // What the curve held before, an open flag too, goes: the trace is one closed curve.
        curve = closedCurve<T>(vertices.vertices());
    }
}

template class Thresholding0<char>;
template class Thresholding0<unsigned char>;
template class Thresholding0<short>;
template class Thresholding0<unsigned short>;
template class Thresholding0<int>;
template class Thresholding0<unsigned int>;
template class Thresholding0<float>;
template class Thresholding0<double>;
template class Thresholding0<long double>;
