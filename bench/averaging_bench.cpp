// Average shapes of 300 leaves with contours of about 6,000 vertices: 1,000 points, 10 bins or 100
// sliding averages. The aim on one core is 5 s for each, 10 s for the registration.

#include "blade/averages/averagingprocess.h"
#include "blade/averages/bladeaveraging.h"
#include "blade/process/blademessages.h"
#include "support/leaf.h"
#include "support/temporaryfolder.h"

#include <benchmark/benchmark.h>

#include <memory>

namespace {

constexpr int leafCount = 300;
constexpr int points = 1000;
constexpr int bins = 10;

/// The stack, made once, and a process on it that is ready to run.
class Sample
{
public:
    static Sample& get()
    {
        static Sample sample;
        return sample;
    }

    std::unique_ptr<AveragingProcess> process(int averages) const
    {
        auto result = std::make_unique<AveragingProcess>();
        result->setStack(*stack_);
        result->setOutPath(folder_.path().string() + "/");
        result->setResamplingPointsNumber(points);
        result->sinusIsEnabled(true);
        result->peakIsEnabled(true);
        result->setAveragesNumber(averages);
        result->setMeasurement(measures_);
        float begin = 0.0f;
        float end = 0.0f;
        result->keyRange(begin, end);
        result->setBegin(begin);
        result->setEnd(end);
        return result;
    }

private:
    Sample()
    {
        BladeMessages::setHandler([](const std::string&) {});
        std::vector<leaf::Outline> outlines;
        for (int k = 0; k < leafCount; ++k) {
            leaf::Shape shape;
            shape.length = 1700.0 + 2.0 * k;
            shape.width = 900.0;
            shape.toothHeight = 60.0;
            shape.teethPerSide = 8 + k % 4;
            shape.angleDegrees = 90.0 + k % 20;
            outlines.push_back(leaf::draw(shape));
        }
        stack_ = leaf::stackOf(outlines);
        for (int k = 0; k < leafCount; ++k) {
            const leaf::Outline& outline = outlines[static_cast<std::size_t>(k)];
            leaf::addItem(*stack_, "Apex", PRIMITIVE_POLYPOINT, k, {outline.apex});
            leaf::addItem(*stack_, "Primary Sinus", PRIMITIVE_POLYPOINT, k, outline.sinuses);
            leaf::addItem(*stack_, "Primary Peak", PRIMITIVE_POLYPOINT, k, outline.tips);
        }
        AveragingProcess process;
        process.setStack(*stack_);
        process.initializationMeasure(measures_);
    }

    TemporaryFolder folder_;
    std::unique_ptr<LMXStack> stack_;
    Matrix<float> measures_;
};

struct Resampled
{
    explicit Resampled(AveragingProcess& process)
        : curves(process.computeResampling(O))
    {}

    ~Resampled()
    {
        for (const Curve<float>* curve : curves) {
            delete curve;
        }
    }

    Vector<int> O;
    std::vector<Curve<float>*> curves;
};

void resampling(benchmark::State& state)
{
    const auto process = Sample::get().process(bins);
    for (auto _ : state) {
        const Resampled resampled(*process);
        benchmark::DoNotOptimize(resampled.curves.data());
    }
}

void registration(benchmark::State& state)
{
    const auto process = Sample::get().process(bins);
    const Resampled resampled(*process);
    Vector<int> counts;
    counts.setZeros(bins);
    Vector<float> centres;
    centres.setZeros(bins);
    const Matrix<float> sorted = process->sortingHomogeneousMeasures(
        process->buildHomogeneousMeasurementMatrix(), counts, centres);
    BladeAveraging averaging;
    averaging.setNumberOfAverages(bins);
    for (auto _ : state) {
        std::vector<Curve<float>> averages;
        averaging.computeNewHomogeneousAverages(resampled.curves, averages, sorted, counts);
        benchmark::DoNotOptimize(averages.data());
    }
}

void rankSearch(benchmark::State& state)
{
    for (auto _ : state) {
        benchmark::DoNotOptimize(Sample::get().process(100)->computeOptimaKnn());
    }
}

void slidingAverages(benchmark::State& state)
{
    const auto process = Sample::get().process(100);
    const Resampled resampled(*process);
    const Matrix<float> leaves = process->buildMeasurementMatrix();
    BladeAveraging averaging;
    averaging.setNumberOfAverages(100);
    Vector<int> ranks(100);
    ranks.fill(20);
    averaging.setKOptimal(ranks);
    for (auto _ : state) {
        std::vector<Curve<float>> averages;
        averaging.computeSlidingAverages(resampled.curves, averages, leaves[0].toType<int>(),
                                         leaves[1], false);
        benchmark::DoNotOptimize(averages.data());
    }
}

} // namespace

BENCHMARK(resampling)->Unit(benchmark::kMillisecond);
BENCHMARK(registration)->Unit(benchmark::kMillisecond);
BENCHMARK(rankSearch)->Unit(benchmark::kMillisecond);
BENCHMARK(slidingAverages)->Unit(benchmark::kMillisecond);
