#include "cli/outputs.h"

#include "cli/failure.h"
#include "system/exception.h"
#include "system/fileinfo.h"
#include "system/filereplacement.h"

#include <QString>

#include <filesystem>

void prepareFolder(const std::string& folder)
{
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    if (error) {
        throw Failure(folder + ": the folder can't be made: " + error.message());
    }
}

void checkWritable(const std::string& filename)
{
    const FileReplacement trial("void checkWritable(const string&)", filename);
}

void requireSuffix(const std::string& filename, const std::string& suffix)
{
    if (FileInfo::suffixName(filename) != suffix || FileInfo::baseName(filename).empty()) {
        throw UsageFailure("'" + filename + "' should be the name of a ." + suffix + " file");
    }
}

std::string folderOf(const std::string& filename)
{
    const std::string folder = FileInfo::dirName(filename);
    if (folder.empty()) {
        return ".";
    }
    return folder.size() > 1 ? folder.substr(0, folder.size() - 1) : folder;
}

std::string twoDecimals(double value)
{
    return QString::number(value, 'f', 2).toStdString();
}
