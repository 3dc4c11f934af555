#include "cli/failure.h"
#include "cli/junctiontable.h"
#include "fuzz/entries.h"

namespace {

bool readJunctions(const std::string& path)
{
    try {
        const JunctionTable table(path);
        for (const Junctions& row : table.rows()) {
            require(!row.slice.empty(), "a row names a slice");
            require(table.find(row.slice) == &row, "a slice has one row");
        }
        return true;
    } catch (const Failure&) {
        return false;
    }
}

} // namespace

const FuzzEntry junctionsEntry = {"junctions", "tsv", readJunctions};
