#include "samples/labelcomparison.h"
#include "samples/samplefiles.h"
#include "samples/scanfiles.h"
#include "samples/scanoptions.h"
#include "system/exception.h"
#include "system/stringtools.h"

#include <tiffio.h>

#include <iostream>
#include <string>
#include <vector>

namespace {

const char* const usage =
    "usage: crenara-samples OUTDIR [--count N] [--seed S] [--growing] [--height H]\n"
    "Draws N (14) sample leaf photographs of the series S (1) into the folder OUTDIR, with the\n"
    "tables junctions.tsv (where blade and stalk meet), truth.tsv (what was drawn) and labels.tsv\n"
    "(each notch and tip of a tooth). The pictures are H (1300) pixels high, 100 to 10000; the "
    "leaves\n"
    "are the same at all heights. With --growing all leaves are of one kind, each larger than\n"
    "the one before.\n"
    "       crenara-samples OUTDIR --scan [--leaves N] [--count N] [--seed S] [--dpi D]\n"
    "         [--stated-dpi D] [--paper white|grey|blue|black] [--ruler mm|cm|inch|none]\n"
    "         [--marker square:20mm|disc:25mm|dots:70mm|none]\n"
    "Draws scans (1) with N (5) leaves each, a ruler, cards, a label and a marker, at D (300) "
    "pixels\n"
    "an inch, with what was drawn in tables; in its folder 'alone' the same leaves one by one.\n"
    "       crenara-samples compare LABELS.tsv LANDMARKS.tsv [--distal] [--reach PIXELS]\n"
    "Compares the landmarks that 'crenara landmarks' writes with those drawn, one by one; one\n"
    "without a counterpart within PIXELS (15) was not found. Exit status 1 if they differ.\n";

struct Options
{
    std::vector<std::string> paths;
    int count = 0;
    int seed = 1;
    int reach = 15;
    int height = sampleHeight;
    bool growing = false;
    bool scan = false;
    ScanOptions scans;
    bool distal = false;
    bool help = false;

    bool isComparison() const { return paths.front() == "compare"; }
};

int positive(const std::string& option, const std::vector<std::string>& arguments, std::size_t at)
{
    const std::string where = "int positive(...)";
    if (at >= arguments.size()) {
        raise<UsageError>(where, option + " needs a number");
    }
    const int value = StringTools::toInt(arguments[at]);
    if (value < 1) {
        raise<UsageError>(where, option + " needs a number above 0");
    }
    return value;
}

Options parse(const std::vector<std::string>& arguments)
{
    Options options;
    std::string scanOption;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string& argument = arguments[i];
        if (argument == "--help") {
            options.help = true;
            return options;
        }
        if (argument == "--count") {
            options.count = positive(argument, arguments, ++i);
        } else if (argument == "--seed") {
            options.seed = positive(argument, arguments, ++i);
        } else if (argument == "--reach") {
            options.reach = positive(argument, arguments, ++i);
        } else if (argument == "--height") {
            options.height = positive(argument, arguments, ++i);
            if (options.height < 100 || options.height > 10000) {
                raise<UsageError>("Options parse(...)",
                                  "--height needs a number from 100 to 10000");
            }
        } else if (argument == "--growing") {
            options.growing = true;
        } else if (argument == "--distal") {
            options.distal = true;
        } else if (argument == "--scan") {
            options.scan = true;
        } else if (i + 1 < arguments.size() &&
                   setScanOption(options.scans, argument, arguments[i + 1])) {
            scanOption = argument;
            ++i;
        } else if (argument.empty() || argument.front() == '-') {
            raise<UsageError>("Options parse(...)", "unexpected argument '" + argument + "'");
        } else {
            options.paths.push_back(argument);
        }
    }
    if (options.paths.empty()) {
        raise<UsageError>("Options parse(...)", "no folder given");
    }
    if (options.paths.size() != (options.isComparison() ? 3U : 1U)) {
        raise<UsageError>("Options parse(...)", "wrong number of arguments");
    }
    if (!options.scan && !scanOption.empty()) {
        raise<UsageError>("Options parse(...)", scanOption + " goes with --scan alone");
    }
    if (options.count == 0) {
        options.count = options.scan ? 1 : 14;
    }
    return options;
}

/// Gives the exit status.
int run(const Options& options)
{
    if (options.isComparison()) {
        return compareLabels(options.paths[1], options.paths[2], options.distal, options.reach,
                             std::cout)
                   ? 0
                   : 1;
    }
    TIFFSetErrorHandler(nullptr); // failures come back as errors of ours
    if (options.scan) {
        writeScans(options.paths.front(), options.count, options.seed, options.scans);
        return 0;
    }
    writeSamples(options.paths.front(), options.count, options.seed,
                 options.growing ? Series::Growing : Series::AllKinds, options.height);
    return 0;
}

} // namespace

int main(int argc, char* argv[])
{
    Options options;
    try {
        options = parse(std::vector<std::string>(argv + 1, argv + argc));
    } catch (const Exception& error) {
        std::cerr << "crenara-samples: " << error.getWhat() << "\n" << usage;
        return 2;
    }
    if (options.help) {
        std::cout << usage;
        return 0;
    }
    try {
        return run(options);
    } catch (const FileError& error) {
        std::cerr << "crenara-samples: " << error.getFilename() << ": " << error.getWhat() << "\n";
    } catch (const Exception& error) {
        std::cerr << "crenara-samples: " << error.getWhat() << "\n";
    }
    return 1;
}
