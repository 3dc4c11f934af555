#include "fuzz/entries.h"
#include "support/temporaryfolder.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <iostream>
#include <map>
#include <random>

namespace {

using Seeds = std::map<std::string, std::string>;

/// The seeds of an entry by name. Those called "fault..." are files that once did harm, be they sound
/// or not; all others are sound.
Seeds seedsOf(const FuzzEntry& entry)
{
    Seeds seeds;
    const std::string folder = std::string(CRENARA_SOURCE_DIR "/fuzz/seeds/") + entry.name;
    for (const auto& file : std::filesystem::directory_iterator(folder)) {
        seeds[file.path().filename().string()] = bytesOf(file.path().string());
    }
    return seeds;
}

/// Reads, and tells whether the file was sound; a fault or a second's work fails the test.
bool reads(const FuzzEntry& entry, const TemporaryFolder& folder, const std::string& bytes)
{
    using Clock = std::chrono::steady_clock;
    const Clock::time_point begin = Clock::now();
    bool sound = false;
    EXPECT_NO_THROW(sound = readBytes(entry, folder.path().string(), bytes));
    EXPECT_LT(Clock::now() - begin, std::chrono::seconds(1));
    return sound;
}

std::string
flipped(const std::string& bytes, std::size_t first, std::size_t last, std::mt19937& random)
{
    std::string damaged = bytes;
    for (int flips = 1 + static_cast<int>(random() % 3); flips > 0; --flips) {
        damaged[first + random() % (last - first)] = static_cast<char>(random());
    }
    return damaged;
}

class FuzzEntries : public testing::TestWithParam<const FuzzEntry*>
{
protected:
    // Readers tell some files' contents on the standard output, which matters to none but a failure.
    void SetUp() override { testing::internal::CaptureStdout(); }

    void TearDown() override
    {
        const std::string told = testing::internal::GetCapturedStdout();
        if (HasFailure()) {
            std::cout << told;
        }
    }

    const FuzzEntry& entry_ = *GetParam();
    TemporaryFolder folder_;
};

} // namespace

TEST_P(FuzzEntries, SoundSeedsAreReadAndFormerFaultsDoNoHarm)
{
    const Seeds seeds = seedsOf(entry_);
    ASSERT_FALSE(seeds.empty());
    for (const auto& [name, bytes] : seeds) {
        SCOPED_TRACE(name);
        const bool sound = reads(entry_, folder_, bytes);
        EXPECT_TRUE(sound || name.compare(0, 5, "fault") == 0);
    }
}

TEST_P(FuzzEntries, SeedsCutAtAnyPlaceDoNoHarm)
{
    for (const auto& [name, bytes] : seedsOf(entry_)) {
        SCOPED_TRACE(name);
        // A long file is cut at some places, odd and even ones.
        const std::size_t step = bytes.size() > 1000 ? bytes.size() / 200 | 1U : 1;
        for (std::size_t length = 0; length < bytes.size() && !HasFailure(); length += step) {
            SCOPED_TRACE(length);
            reads(entry_, folder_, bytes.substr(0, length));
        }
    }
}

TEST_P(FuzzEntries, SeedsWithWrongBytesDoNoHarm)
{
    std::mt19937 random(20);
    for (const auto& [name, bytes] : seedsOf(entry_)) {
        SCOPED_TRACE(name);
        for (int i = 0; i < 300 && !bytes.empty() && !HasFailure(); ++i) {
            SCOPED_TRACE(i);
            // Half of the damage hits the beginning, where headers stand.
            const std::size_t reach =
                i % 2 == 0 ? bytes.size() : std::min<std::size_t>(64, bytes.size());
            reads(entry_, folder_, flipped(bytes, 0, reach, random));
        }
    }
    rusage usage = {};
    getrusage(RUSAGE_SELF, &usage);
#if !defined(__SANITIZE_ADDRESS__)
    EXPECT_LT(usage.ru_maxrss, 512 * 1024) << "kilobytes at most at any time";
#endif
}

INSTANTIATE_TEST_SUITE_P(Readers,
                         FuzzEntries,
                         testing::Values(&hdf5Entry,
                                         &imageEntry,
                                         &imgEntry,
                                         &junctionsEntry,
                                         &projectEntry,
                                         &shapeEntry,
                                         &stackEntry,
                                         &tableEntry,
                                         &volumeEntry),
                         [](const auto& entry) { return std::string(entry.param->name); });
