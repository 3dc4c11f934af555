#pragma once

#include <H5Cpp.h>

#include <string>
#include <vector>

/// What the readers of HDF5 files hold against the library and the files. Works in the child process
/// (`ChildReader`); HDF5 itself raises `H5::Exception`.
namespace hdf5file {

/// HDF5 prints its error stack by itself; not while this lives.
class Silence
{
public:
    Silence();
    ~Silence();
    Silence(const Silence&) = delete;
    Silence& operator=(const Silence&) = delete;

private:
    H5E_auto2_t print_ = nullptr;
    void* data_ = nullptr;
};

/// The names of the links of the root group, in their order.
std::vector<std::string> rootLinks(const H5::H5File& file);

/// Opens the dataset of the first key; `FileFormatError` without any.
H5::DataSet openDataSet(const H5::H5File& file, const std::vector<std::string>& keys);

/// Two or three sizes above 0, as many elements as an `int` counts; else `FileFormatError`.
std::vector<int> extentOf(const H5::DataSet& dataSet, const std::string& filename);

/// Integers or floating numbers of a width that machines have; else `FileFormatError`.
void requireNumbers(const H5::DataSet& dataSet, const std::string& filename);

/// Refuses chunks that HDF5 would trust: too large, more than the file can hold, or stored plain and
/// too short, so that it would read past their end.
void requireWholeChunks(const H5::DataSet& dataSet, const H5::H5File& file);

/// How many bytes of elements, as they are stored, a file of this length may describe. Deflate makes
/// up to 1040 of a byte; what was created but never written takes none of the file, and is believed up
/// to an amount that does no harm.
unsigned long long mostBytes(unsigned long long length);

} // namespace hdf5file
