#include "host/deskapplication.h"
#include "host/deskwindow.h"
#include "host/document/lmxrootmediator.h"
#include "host/panels/slicepanel.h"
#include "host/stackplugin.h"
#include "host/view/sliceview.h"
#include "image/sources/imagesourcefile.h"
#include "stack/stack.h"
#include "stack/stackslice.h"
#include "stack/stackwriter.h"
#include "support/temporaryfolder.h"
#include "support/userfolders.h"

#include <benchmark/benchmark.h>

#include <filesystem>
#include <fstream>
#include <string>

namespace {

constexpr int columns = 5472;
constexpr int rows = 3648;

void append(std::string& bytes, unsigned value, int count)
{
    for (int i = 0; i < count; ++i) {
        bytes += static_cast<char>(value >> (8 * i) & 255);
    }
}

/// A photograph of 20 megapixels, of which only the header is on disk: its pixels are a hole. Written
/// by hand, since a library would write the pixels, too.
void writeSparse(const std::string& path)
{
    constexpr unsigned shortType = 3;
    constexpr unsigned longType = 4;
    constexpr unsigned start = 4096;
    constexpr unsigned length = 3U * columns * rows;
    constexpr unsigned bitsPlace = 8 + 2 + 10 * 12 + 4;
    const unsigned entries[10][4] = {{256, longType, 1, columns},    {257, longType, 1, rows},
                                     {258, shortType, 3, bitsPlace}, {259, shortType, 1, 1},
                                     {262, shortType, 1, 2},         {273, longType, 1, start},
                                     {277, shortType, 1, 3},         {278, longType, 1, rows},
                                     {279, longType, 1, length},     {284, shortType, 1, 1}};
    std::string bytes("II*\0\x08\0\0\0", 8);
    append(bytes, 10, 2);
    for (const auto& entry : entries) {
        append(bytes, entry[0], 2);
        append(bytes, entry[1], 2);
        append(bytes, entry[2], 4);
        append(bytes, entry[3], 4);
    }
    append(bytes, 0, 4);
    for (int channel = 0; channel < 3; ++channel) {
        append(bytes, 8, 2);
    }
    std::ofstream(path, std::ios_base::binary) << bytes;
    std::filesystem::resize_file(path, std::uintmax_t(start) + length);
}

/// A stack file of so many photographs.
std::string writeStack(const TemporaryFolder& folder, int slices)
{
    Stack stack;
    for (int i = 0; i < slices; ++i) {
        const std::string path = folder.file("leaf" + std::to_string(i) + ".tif");
        writeSparse(path);
        auto* slice = new StackSlice;
        slice->setName("leaf" + std::to_string(i));
        slice->setStack(stack);
        slice->setImageSource(ImageSourceFile(path));
        stack.addSlice(*slice);
    }
    StackWriter().write(stack, folder.file("leaves.sdf"));
    return folder.file("leaves.sdf");
}

/// Mebibytes, from the kernel's account of this process.
double memory(const std::string& key)
{
    std::ifstream status("/proc/self/status");
    std::string word;
    double kibibytes = 0.0;
    while (status >> word) {
        if (word == key + ":") {
            status >> kibibytes;
        }
    }
    return kibibytes / 1024.0;
}

void startApplication()
{
    clearUserFolders();
    qputenv("QT_QPA_PLATFORM", "offscreen");
    static int count = 1;
    static char name[] = "bench";
    static char* arguments[] = {name, nullptr};
    static const DeskApplication application(count, arguments);
}

void waitForPicture(const SliceView& view)
{
    do {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 2);
    } while (view.isLoading());
    QCoreApplication::processEvents();
}

/// From the click on a file until its first photograph is drawn.
void openStack(benchmark::State& state)
{
    startApplication();
    const TemporaryFolder folder;
    const QString file =
        QString::fromStdString(writeStack(folder, static_cast<int>(state.range(0))));
    StackPlugin plugin;
    for (auto _ : state) {
        LMXRootMediator mediator;
        DeskWindow window(mediator, plugin);
        window.show();
        window.openFiles({file});
        waitForPicture(*window.findChild<SliceView*>());
    }
    state.counters["peakMiB"] = memory("VmHWM");
}

/// The same for photographs that become a new stack.
void openPhotographs(benchmark::State& state)
{
    startApplication();
    const TemporaryFolder folder;
    QStringList files;
    for (int i = 0; i < state.range(0); ++i) {
        const std::string path = folder.file("leaf" + std::to_string(i) + ".tif");
        writeSparse(path);
        files.append(QString::fromStdString(path));
    }
    StackPlugin plugin;
    for (auto _ : state) {
        LMXRootMediator mediator;
        DeskWindow window(mediator, plugin);
        window.show();
        window.openFiles(files);
        waitForPicture(*window.findChild<SliceView*>());
    }
}

/// A look at each photograph at full size.
void pageThrough(benchmark::State& state)
{
    startApplication();
    const TemporaryFolder folder;
    const int slices = static_cast<int>(state.range(0));
    const QString file = QString::fromStdString(writeStack(folder, slices));
    StackPlugin plugin;
    for (auto _ : state) {
        LMXRootMediator mediator;
        DeskWindow window(mediator, plugin);
        window.show();
        window.openFiles({file});
        auto* panel = window.findChild<SlicePanel*>();
        const auto* view = window.findChild<SliceView*>();
        for (int i = 0; i < slices; ++i) {
            panel->chooseSlice(i);
            waitForPicture(*view);
        }
    }
    state.counters["peakMiB"] = memory("VmHWM");
    state.counters["slices"] =
        benchmark::Counter(slices, benchmark::Counter::kIsIterationInvariantRate);
}

} // namespace

BENCHMARK(openStack)->Arg(1000)->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime();
BENCHMARK(openPhotographs)->Arg(1000)->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime();
BENCHMARK(pageThrough)->Arg(150)->Unit(benchmark::kMillisecond)->Iterations(1)->UseRealTime();
