#include "blade/hierarchy/leafhierarchybuilding.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace {

struct Landmark
{
    int index;
    int code;
};

Matrix<int> table(const std::vector<Landmark>& landmarks)
{
    Matrix<int> result(static_cast<int>(landmarks.size()), 2);
    for (int k = 0; k < result.getSize1(); ++k) {
        result[k][0] = landmarks[static_cast<std::size_t>(k)].index;
        result[k][1] = landmarks[static_cast<std::size_t>(k)].code;
    }
    result.sortRows(0);
    return result;
}

/// A closed curve of `n` vertices around the origin with a positive area and a ragged margin.
Curve<float> raggedCurve(int n, std::mt19937& random)
{
    Curve<float> curve(2, n, 0, 0, false);
    std::uniform_real_distribution<double> radius(60.0, 140.0);
    for (int i = 0; i < n; ++i) {
        const double r = radius(random);
        curve[i][0] = static_cast<float>(r * std::cos(2.0 * M_PI * i / n));
        curve[i][1] = static_cast<float>(r * std::sin(2.0 * M_PI * i / n));
    }
    return curve;
}

/// The rules of the walk over one half said anew, on indices alone and in double precision.
class Oracle
{
public:
    Oracle(const Curve<float>& curve, double limit, std::vector<Landmark> half, bool swapped)
        : curve_(curve)
        , limit_(limit)
        , half_(std::move(half))
        , swapped_(swapped)
        , depths_(half_.size())
        , tips_(half_.size(), 1)
    {
        std::size_t first = 0;
        while (first < half_.size() && half_[first].code != 2) {
            ++first;
        }
        std::size_t last = half_.size();
        while (last > first && half_[last - 1].code != 2) {
            --last;
        }
        if (last > first) {
            depths_[first].push_back(1);
            depths_[last - 1].push_back(1);
            walk(1, first, last - 1);
        }
    }

    const std::vector<int>& depths(std::size_t k) const { return depths_[k]; }

    int tip(std::size_t k) const { return tips_[k]; }

    int secondary() const { return secondary_; }

private:
    Vector<float> at(std::size_t k) const { return curve_[half_[k].index]; }

    /// The angle on the blade's side, by which the direction to the lower contour index is turned
    /// against that to the higher one.
    double angle(std::size_t k, std::size_t first, std::size_t last) const
    {
        const Vector<float> a = at(swapped_ ? last : first) - at(k);
        const Vector<float> b = at(swapped_ ? first : last) - at(k);
        const double turn =
            std::atan2(double(b[1]), double(b[0])) - std::atan2(double(a[1]), double(a[0]));
        return std::fmod(turn + 4.0 * M_PI, 2.0 * M_PI);
    }

    double stretchArea(std::size_t i, std::size_t j, std::size_t other) const
    {
        const int low = std::min(half_[i].index, half_[j].index);
        const int high = std::max(half_[i].index, half_[j].index);
        // The curve from one vertex on to another, open.
        const auto stretch = [&](int from, int to) {
            Curve<float> part(2, 0, 0, curve_.getSize(), true);
            part.append(curve_[from]);
            for (int k = from; k != to; part.append(curve_[k])) {
                k = (k + 1) % curve_.getSize();
            }
            return part;
        };
        const bool inner = stretch(low, high).length() <= stretch(high, low).length();
        Curve<float> polygon = inner ? stretch(low, high) : stretch(high, low);
        polygon.append(at(other));
        polygon.setOpen(false);
        return polygon.twiceArea(0, 1) / 2.0;
    }

    void walk(int depth, std::size_t first, std::size_t last)
    {
        std::size_t best = first;
        double widest = 0.0;
        for (std::size_t k = first + 1; k < last; ++k) {
            if (half_[k].code == 2 && angle(k, first, last) > widest) {
                widest = angle(k, first, last);
                best = k;
            }
        }
        if (best == first) {
            for (std::size_t k = first + 1; k < last; ++k) {
                if (half_[k].code == 3) {
                    tips_[k] = depth;
                    break;
                }
            }
            return;
        }
        if (widest > limit_) {
            depths_[best].push_back(depth);
            walk(depth, first, best);
            walk(depth, best, last);
            return;
        }
        ++secondary_;
        const bool firstIsMother = stretchArea(first, best, last) > stretchArea(best, last, first);
        depths_[best].push_back(depth + 1);
        depths_[firstIsMother ? last : first].push_back(depth + 1);
        walk(depth + (firstIsMother ? 0 : 1), first, best);
        walk(depth + (firstIsMother ? 1 : 0), best, last);
    }

    const Curve<float>& curve_;
    double limit_;
    std::vector<Landmark> half_;
    bool swapped_;
    std::vector<std::vector<int>> depths_;
    std::vector<int> tips_;
    int secondary_ = 0;
};

} // namespace

TEST(LeafHierarchyBuilding, TheWalkFollowsItsRulesOnRandomLeaves)
{
    std::mt19937 random(11);
    int deep = 0;
    for (int round = 0; round < 400; ++round) {
        SCOPED_TRACE(round);
        const int n = 40 + static_cast<int>(random() % 160u);
        const Curve<float> curve = raggedCurve(n, random);
        const int apex = n / 3 + static_cast<int>(random() % static_cast<unsigned>(n / 3));
        std::vector<Landmark> landmarks = {{2, 0}, {n - 3, 0}, {apex, 1}};
        std::vector<Landmark> halves[2];
        bool isSinus = true;
        for (int i = 4; i < n - 4; i += 1 + static_cast<int>(random() % 6u)) {
            if (i != apex) {
                landmarks.push_back({i, isSinus ? 2 : 3});
                halves[i < apex ? 0 : 1].push_back(landmarks.back());
                isSinus = !isSinus;
            }
        }
        std::reverse(halves[0].begin(), halves[0].end());
        const float limit = std::uniform_real_distribution<float>(0.5f, 6.0f)(random);

        LeafHierarchyBuilding<float> building;
        building.setCurve(curve);
        building.setLeafSegmentation(table(landmarks));
        building.setLimitAngle(limit);
        HierarchyTreeNode<float> roots[2];
        testing::internal::CaptureStdout();
        building.updateHierarchy(roots[0], roots[1]);
        const std::string output = testing::internal::GetCapturedStdout();

        const Matrix<int> result = building.getLeafSegmentation();
        const auto status = building.getStatus();
        int secondary = 0;
        for (int side = 0; side < 2; ++side) {
            const Oracle oracle(curve, limit, halves[side], side == 1);
            secondary += oracle.secondary();
            for (std::size_t k = 0; k < halves[side].size(); ++k) {
                int row = 0;
                while (result[row][0] != halves[side][k].index) {
                    ++row;
                }
                if (halves[side][k].code == 2) {
                    EXPECT_EQ(status[static_cast<std::size_t>(row)], oracle.depths(k));
                } else {
                    EXPECT_EQ(result[row][1], oracle.tip(k) + 2);
                    deep += oracle.tip(k) > 2 ? 1 : 0;
                }
            }
        }
        const std::string line = "############### pointe secondaire ###############\n";
        EXPECT_EQ(output.size(), static_cast<std::size_t>(secondary) * line.size());
        EXPECT_EQ(output.substr(0, line.size()), secondary > 0 ? line : "");
    }
    EXPECT_GT(deep, 50) << "the leaves are not deep enough to show anything";
}

TEST(LeafHierarchyBuilding, HalvesRunFromTheApexToTheJunctionsWithOneLandmarkAPlace)
{
    std::mt19937 random(3);
    LeafHierarchyBuilding<float> building;
    building.setCurve(raggedCurve(20, random));
    building.setLeafSegmentation(
        table({{1, 0}, {3, 2}, {5, 3}, {5, 2}, {10, 1}, {10, 2}, {12, 2}, {16, 0}, {18, 2}}));
    Matrix<int> first;
    Matrix<int> second;
    building.separateHalfLeaves(&first, &second);
    ASSERT_EQ(first.getSize1(), 2);
    EXPECT_TRUE(first[0][0] == 5 && first[1][0] == 3 && first[1][1] == 2);
    ASSERT_EQ(second.getSize1(), 1);
    EXPECT_EQ(second[0][0], 12);
    EXPECT_EQ(building.findExtremeSinusesIds(second), (std::vector<int>{0, 0}));
    EXPECT_TRUE(building.findExtremeSinusesIds(Matrix<int>(0, 3)).empty());
}

TEST(LeafHierarchyBuilding, ALeafWithoutJunctionsApexOrAnglesEndsTheWalk)
{
    Curve<float> curve(2, 12, 0, 0, false); // all vertices in one place: no angle anywhere
    for (int i = 0; i < curve.getSize(); ++i) {
        curve[i].setZeros();
    }
    LeafHierarchyBuilding<float> building;
    building.setCurve(curve);
    HierarchyTreeNode<float> a;
    HierarchyTreeNode<float> b;
    building.updateHierarchy(a, b);
    EXPECT_TRUE(building.getStatus().empty());
    building.setLeafSegmentation(table({{2, 2}, {3, 3}, {4, 2}, {5, 3}, {6, 2}}));
    building.updateHierarchy(a, b);
    EXPECT_TRUE(building.getStatus()[2].empty());
    EXPECT_EQ(building.getLeafSegmentation()[1][1], 3);
}

TEST(LeafHierarchyBuilding, TheShorterStretchIsTakenAndTheContourStaysAsItIs)
{
    const Curve<float> square = Curve<float>::square(0.0f, 0.0f, 4.0f).resample(16);
    LeafHierarchyBuilding<float> building;
    EXPECT_EQ(building.computeSubCurve(square, 6, 2).getSize(), 5);
    const Curve<float> across = building.computeSubCurve(square, 1, 14);
    ASSERT_EQ(across.getSize(), 4);
    EXPECT_EQ(across[0], square[14]);
    EXPECT_EQ(across[3], square[1]);
    EXPECT_EQ(building.computeSubCurve(square, 0, 8)[0], square[0]) << "a tie";
    EXPECT_EQ(building.computeSubCurve(square, 3, 3).getSize(), 1);
    // Two sides of the square each, closed over the diagonal.
    const std::vector<float> areas = building.computeMotherTeethArea(square, 0, 4, 8);
    EXPECT_NEAR(areas[0], 8.0f, 1e-4);
    EXPECT_NEAR(areas[1], 8.0f, 1e-4);
    EXPECT_EQ(building.computeMotherTeethArea(square, 3, 3, 3)[0], 0.0f);
    EXPECT_EQ(square.getSize(), 16);
}
