#include "samples/samplefiles.h"
#include "system/exception.h"
#include "system/stringtools.h"

#include <tiffio.h>

#include <iostream>
#include <string>
#include <vector>

namespace {

const char* const usage =
    "usage: crenara-samples OUTDIR [--count N] [--seed S]\n"
    "Draws N (14) sample leaf photographs of the series S (1) into the folder OUTDIR, with the\n"
    "tables junctions.tsv (where blade and stalk meet) and truth.tsv (what was drawn).\n";

struct Options
{
    std::string folder;
    int count = 14;
    int seed = 1;
    bool help = false;
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
        } else if (argument.empty() || argument.front() == '-' || !options.folder.empty()) {
            raise<UsageError>("Options parse(...)", "unexpected argument '" + argument + "'");
        } else {
            options.folder = argument;
        }
    }
    if (options.folder.empty()) {
        raise<UsageError>("Options parse(...)", "no folder given");
    }
    return options;
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
    TIFFSetErrorHandler(nullptr); // failures come back as errors of ours
    try {
        writeSamples(options.folder, options.count, options.seed);
    } catch (const FileError& error) {
        std::cerr << "crenara-samples: " << error.getFilename() << ": " << error.getWhat() << "\n";
        return 1;
    }
    return 0;
}
