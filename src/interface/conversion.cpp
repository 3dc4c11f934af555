#include "interface/conversion.h"

#include "image/files/tifforigin.h"
#include "system/exception.h"
#include "system/fileinfo.h"

#include <QCryptographicHash>
#include <QFile>

namespace {

std::string checksum(const std::string& path)
{
    QFile file(QString::fromStdString(path));
    QCryptographicHash hash(QCryptographicHash::Sha256);
    if (!file.open(QIODevice::ReadOnly) || !hash.addData(&file)) {
        raiseFile<FileReadError>("Conversion::Conversion(const string&, ...)",
                                 "Cannot read the photograph", path);
    }
    return hash.result().toHex().toStdString();
}

} // namespace

Conversion::Conversion(const std::string& photograph,
                       const std::string& folder,
                       const std::string& part)
    : photograph_(photograph)
    , stem_(folder + (folder.empty() || folder.back() == '/' ? "" : "/") +
            FileInfo::fileName(photograph) + part)
    , origin_("sha256:" + checksum(photograph) + (part.empty() ? "" : " " + part))
{
    findPlace();
}

void Conversion::next()
{
    ++number_;
    findPlace();
}

void Conversion::findPlace()
{
    for (;; ++number_) {
        path_ = stem_ + (number_ == 1 ? "" : "-" + std::to_string(number_)) + ".tif";
        made_ = tiffOrigin(path_) == origin_;
        if (made_ || !FileInfo::fileExists(path_)) {
            return;
        }
    }
}

std::string Conversion::note() const
{
    return number_ == 1 ? ""
                        : photograph_ + " is converted to " + path_ +
                              ", since a file of another picture has the name " + stem_ + ".tif";
}
