#include "system/randomgenerator.h"

#include "numerics/vector.h"
#include "system/exception.h"
#include "system/recommendedrandomengine.h"

#include <cmath>

RandomGenerator::RandomGenerator()
    : engine(std::make_unique<RecommendedRandomEngine>())
{
    init(-1);
}

RandomGenerator::~RandomGenerator() = default;

void RandomGenerator::setRandomEngine(RandomEngine* newEngine)
{
    if (!newEngine) {
        raise<ValueError>("void RandomGenerator::setRandomEngine(RandomEngine*)",
                          "A generator needs an engine");
    }
    if (newEngine != engine.get()) {
        engine.reset(newEngine);
    }
    hasSpare = false;
}

long RandomGenerator::init(long seed)
{
    hasSpare = false;
    return engine->init(seed);
}

long RandomGenerator::uniformL()
{
    return engine->uniformL();
}

long RandomGenerator::uniformL(long n)
{
    return static_cast<long>(static_cast<double>(n) * uniformLF());
}

long RandomGenerator::uniformL(long a, long b)
{
    return a + uniformL(b - a + 1);
}

double RandomGenerator::uniformLF()
{
    return engine->uniformLF();
}

double RandomGenerator::uniformLF(double x)
{
    return x * uniformLF();
}

double RandomGenerator::uniformLF(double a, double b)
{
    return a + uniformLF(b - a);
}

int RandomGenerator::draw(const Vector<int>& weights)
{
    const int n = weights.getSize();
    if (n < 1) {
        raise<SizeError>("int RandomGenerator::draw(const Vector<int>&)", "This vector is empty.");
    }
    long sum = 0;
    for (int i = 0; i < n; ++i) {
        sum += weights[i];
    }
    if (sum < 1) {
        return static_cast<int>(uniformL(n));
    }
    const long rank = uniformL(1, sum);
    int index = 0;
    for (long reached = weights[0]; reached < rank && index < n - 1;) {
        ++index;
        reached += weights[index];
    }
    return index;
}

bool RandomGenerator::bernoulli(float p)
{
    return static_cast<double>(p) >= uniformLF();
}

double RandomGenerator::gaussian()
{
    if (hasSpare) {
        hasSpare = false;
        return spare;
    }
    double a = 0.0;
    double b = 0.0;
    double s = 0.0;
    do {
        a = uniformLF(-1.0, 1.0);
        b = uniformLF(-1.0, 1.0);
        s = a * a + b * b;
    } while (s >= 1.0 || s == 0.0);
    const double f = std::sqrt(-2.0 * std::log(s) / s);
    spare = a * f;
    hasSpare = true;
    return b * f;
}

double RandomGenerator::gaussian(double sigma)
{
    return gaussian() * sigma;
}

double RandomGenerator::gaussian(double mean, double sigma)
{
    return gaussian() * sigma + mean;
}

int RandomGenerator::poisson(float lambda)
{
    const float limit = std::exp(-lambda);
    float p = static_cast<float>(uniformLF());
    int count = 0;
    while (p > limit) {
        ++count;
        p = static_cast<float>(p * uniformLF());
    }
    return count;
}
