#include "fuzz/entries.h"
#include "system/dataset.h"

namespace {

bool readTable(const std::string& path)
{
    DataSet table(path);
    require(table.columnTypes().find("type error") == std::string::npos, "columns have types");
    require(table.save(path + ".1", true), "the table can be written");
    const DataSet again(path + ".1");
    require(again.size()[1] <= table.size()[1], "no column is added by writing");
    return true;
}

} // namespace

const FuzzEntry tableEntry = {"table", "tsv", readTable};
