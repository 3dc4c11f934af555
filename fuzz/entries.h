#pragma once

#include <stdexcept>
#include <string>

/// A reader of files, as the fuzzer and the replay of its seeds call it.
///
/// Whatever bytes the file holds, a reader may do one of three things: read it, raise an error of
/// ours, or tell in its own way that the file is not sound. Anything else is a fault: another
/// exception, more time or memory than the file can account for, or a `Broken` promise.
struct FuzzEntry
{
    /// The folder of its seeds too.
    const char* name;

    /// Of the file, for readers that look at it.
    const char* suffix;

    /// Reads the file and gives true if it was sound. May write further files beside it.
    bool (*read)(const std::string& path);
};

/// HDF5 files of one dataset.
extern const FuzzEntry hdf5Entry;

/// TIFF, BigTIFF and LSM files as header, images, planes and volume.
extern const FuzzEntry imageEntry;

/// Raw images.
extern const FuzzEntry imgEntry;

/// Tables of petiole junctions.
extern const FuzzEntry junctionsEntry;

/// Project files; what was read comes back when it is written.
extern const FuzzEntry projectEntry;

/// Shapes of every type; what was read comes back when it is written.
extern const FuzzEntry shapeEntry;

/// Stack description files. A sound one can be written, and is then read without a message of an
/// error and written with the same bytes.
extern const FuzzEntry stackEntry;

/// Data sets.
extern const FuzzEntry tableEntry;

/// Volumes; what was read comes back when it is written.
extern const FuzzEntry volumeEntry;

/// A promise that a reader did not keep. Not an error of ours, so that it counts as a fault.
class Broken : public std::logic_error
{
public:
    using std::logic_error::logic_error;
};

void require(bool kept, const char* promise);

/// The bytes of a file; raises `Broken` if there is none.
std::string bytesOf(const std::string& path);

/// Hands a file of these bytes, in `folder`, to the reader. True if it was sound; faults come
/// through as exceptions.
bool readBytes(const FuzzEntry& entry, const std::string& folder, const std::string& bytes);
