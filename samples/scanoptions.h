#pragma once

#include "samples/scanplan.h"

#include <string>

/// Takes one option of a scan with its value, "--paper blue". Gives false if there is no such
/// option; raises `UsageError` for a value that it doesn't have.
bool setScanOption(ScanOptions& options, const std::string& option, const std::string& value);
