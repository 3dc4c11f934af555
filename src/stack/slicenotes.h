#pragma once

#include <optional>
#include <string>

class Slice;

/// Notes that the program keeps in a slice's annotation, which the stack file stores: lines
/// "key: value" before what else the annotation says. Neither key nor value may contain a line end or a
/// double quote, nor a key a colon.
namespace SliceNotes {

/// Puts the value in the place of the one that the key has.
void set(Slice& slice, const std::string& key, const std::string& value);

void remove(Slice& slice, const std::string& key);

/// Nothing if the annotation has no such key.
std::optional<std::string> get(const Slice& slice, const std::string& key);

} // namespace SliceNotes
